#include <QApplication>
#include <QStandardPaths>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    QApplication application(argc, argv);
    const int result = RUN_ALL_TESTS();
    // Known only now: the filter is applied by the run.
    if (testing::UnitTest::GetInstance()->test_to_run_count() == 0) {
        qCritical("No test matches.");
        return 1;
    }
    return result;
}
