#include "ui/WidgetSheets.h"
#include "support/StrangersNames.h"

#include <QApplication>
#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

#include <memory>

using namespace Qt::StringLiterals;
using tarnwell::ports::Alert;
using tarnwell::ports::AlertStyle;
using tarnwell::ui::WidgetSheets;

namespace {

Alert question(AlertStyle style)
{
    return {style, u"Remove <b>All</b>"_s, u"Remove \"<i>Save</i>\"?"_s, u"Proceed"_s, u"Cancel"_s,
            {}};
}

class WidgetSheetsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_window = std::make_unique<QWidget>();
        m_inner = new QWidget(m_window.get());
        show(*m_window);
    }

    static void show(QWidget &window)
    {
        window.show();
        window.activateWindow();
        QApplication::processEvents();
    }

    void begin(const Alert &alert)
    {
        m_sheets->beginAlert(alert, m_inner, [this](int code) { m_codes.append(code); });
        QApplication::processEvents();
    }

    void begin(QWidget &sheet)
    {
        m_sheets->beginSheet(&sheet, m_inner, [this, shown = &sheet](int code) {
            m_codes.append(code);
            shown->hide();
        });
        QApplication::processEvents();
    }

    static QMessageBox *shownAlert()
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (auto *box = qobject_cast<QMessageBox *>(widget); box && box->isVisible())
                return box;
        }
        return nullptr;
    }

    static void press(Qt::Key key)
    {
        QTest::keyClick(QApplication::focusWidget(), key);
        QApplication::processEvents();
    }

    std::unique_ptr<QWidget> m_window;
    QWidget *m_inner = nullptr;
    std::unique_ptr<WidgetSheets> m_sheets = std::make_unique<WidgetSheets>();
    QList<int> m_codes;
};

} // namespace

TEST_F(WidgetSheetsTest, AlertsAnswerWithTheCodeOfTheButton)
{
    struct Row
    {
        const char *name;
        QString button;
        int code;
    };
    const Row rows[] = {
        {"default", u"Proceed"_s, 1}, {"alternate", u"Cancel"_s, 0}, {"other", u"Later"_s, -1}};
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Alert alert = question(AlertStyle::Informational);
        alert.otherButton = u"Later"_s;
        begin(alert);
        QMessageBox *box = shownAlert();
        ASSERT_TRUE(box);
        EXPECT_EQ(box->buttons().size(), 3);
        for (QAbstractButton *button : box->buttons()) {
            if (button->text() == row.button)
                button->click();
        }
        EXPECT_EQ(m_codes, QList<int>()) << "the answer comes from the event loop";
        QApplication::processEvents();
        EXPECT_EQ(std::exchange(m_codes, {}), QList<int>{row.code});
        EXPECT_FALSE(shownAlert());
    }
}

TEST_F(WidgetSheetsTest, KeysAnswerAlerts)
{
    struct Row
    {
        const char *name;
        Alert alert;
        Qt::Key key;
        int code;
    };
    Alert notice = question(AlertStyle::Informational);
    notice.alternateButton.clear();
    Alert choice = notice;
    choice.otherButton = u"Later"_s;
    const Row rows[] = {
        {"Return", question(AlertStyle::Informational), Qt::Key_Return, 1},
        {"Escape", question(AlertStyle::Informational), Qt::Key_Escape, 0},
        {"Escape on something dangerous", question(AlertStyle::Critical), Qt::Key_Escape, 0},
        {"a careless Return loses nothing", question(AlertStyle::Critical), Qt::Key_Return, 0},
        {"Escape without an alternate button", notice, Qt::Key_Escape, 0},
        {"Escape with two other buttons", choice, Qt::Key_Escape, 0},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        begin(row.alert);
        ASSERT_TRUE(shownAlert());
        press(row.key);
        EXPECT_EQ(std::exchange(m_codes, {}), QList<int>{row.code});
    }
}

TEST_F(WidgetSheetsTest, ADangerousAlertStartsOnTheSafeButtonAndKeepsItsDefault)
{
    begin(question(AlertStyle::Critical));
    auto *focused = qobject_cast<QPushButton *>(QApplication::focusWidget());
    ASSERT_TRUE(focused);
    EXPECT_EQ(focused->text(), u"Cancel"_s);
    for (QAbstractButton *button : shownAlert()->buttons()) {
        if (button->text() == "Proceed"_L1)
            button->setFocus();
    }
    press(Qt::Key_Return);
    EXPECT_EQ(m_codes, QList<int>{1});
}

TEST_F(WidgetSheetsTest, TextsOfAlertsAreNeverMarkup)
{
    begin(question(AlertStyle::Critical));
    QStringList shown;
    for (const QLabel *label : shownAlert()->findChildren<QLabel *>()) {
        if (label->text().contains(u'<')) {
            EXPECT_EQ(label->textFormat(), Qt::PlainText) << qPrintable(label->text());
            shown.append(label->text());
        }
    }
    EXPECT_EQ(shown.size(), 2);
    EXPECT_EQ(shownAlert()->accessibleDescription(), u"Remove \"<i>Save</i>\"?"_s);
}

TEST_F(WidgetSheetsTest, AlertsKeepTheirSizeWhateverTheySay)
{
    for (const QString &name : tarnwell::tests::strangersNames()) {
        Alert alert = question(AlertStyle::Critical);
        alert.message = u"Remove \"%1\"?\n\nReally?"_s.arg(name);
        begin(alert);
        ASSERT_TRUE(shownAlert());
        EXPECT_LE(shownAlert()->width(), 700) << qPrintable(name.right(10));
        EXPECT_LE(shownAlert()->height(), 700) << qPrintable(name.right(10));
        EXPECT_TRUE(tarnwell::tests::isHonest(shownAlert()->accessibleDescription(), 20));
        press(Qt::Key_Escape);
    }
}

TEST_F(WidgetSheetsTest, OnlyTheWindowBelowIsBlocked)
{
    QWidget other;
    show(other);
    begin(question(AlertStyle::Informational));
    EXPECT_EQ(shownAlert()->windowModality(), Qt::WindowModal);
    EXPECT_EQ(shownAlert()->windowHandle()->transientParent(), m_window->windowHandle());
    QPushButton below(m_window.get());
    int clicks = 0;
    QObject::connect(&below, &QPushButton::clicked, &below, [&] { ++clicks; });
    below.show();
    QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, below.rect().center());
    EXPECT_EQ(clicks, 0);
    QPushButton beside(&other);
    QObject::connect(&beside, &QPushButton::clicked, &beside, [&] { ++clicks; });
    beside.show();
    QTest::mouseClick(other.windowHandle(), Qt::LeftButton, {}, beside.rect().center());
    EXPECT_EQ(clicks, 1);
}

TEST_F(WidgetSheetsTest, ASheetStaysUntilItsCallbackHidesIt)
{
    QDialog sheet;
    begin(sheet);
    EXPECT_TRUE(sheet.isVisible());
    m_sheets->endSheet(&sheet, 7);
    EXPECT_TRUE(sheet.isVisible());
    QApplication::processEvents();
    EXPECT_EQ(m_codes, QList<int>{7});
    EXPECT_FALSE(sheet.isVisible());
    m_sheets->endSheet(&sheet, 8);
    QApplication::processEvents();
    EXPECT_EQ(m_codes, QList<int>{7}) << "a sheet ends once";
    begin(sheet);
    EXPECT_TRUE(sheet.isVisible()) << "and can be shown again";
}

TEST_F(WidgetSheetsTest, SheetsAreDismissedWithTheirEscapeButtonIfTheyHaveOne)
{
    enum class How { EscapeKey, WindowButton };
    struct Row
    {
        const char *name;
        bool hasButton;
        How how;
        int code;
    };
    const Row rows[] = {
        {"Escape presses the button", true, How::EscapeKey, 5},
        {"the window's button presses the button", true, How::WindowButton, 5},
        {"Escape alone", false, How::EscapeKey, 0},
        {"the window's button alone", false, How::WindowButton, 0},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QDialog sheet;
        auto *layout = new QHBoxLayout(&sheet);
        auto *button = new QPushButton(u"Done"_s);
        layout->addWidget(button);
        if (row.hasButton) {
            button->setShortcut(QKeySequence(Qt::Key_Escape));
            QObject::connect(button, &QPushButton::clicked, &sheet,
                             [&] { m_sheets->endSheet(&sheet, 5); });
        }
        begin(sheet);
        sheet.activateWindow();
        QApplication::processEvents();
        if (row.how == How::WindowButton)
            sheet.close();
        else
            QTest::keyClick(&sheet, Qt::Key_Escape);
        QApplication::processEvents();
        EXPECT_EQ(std::exchange(m_codes, {}), QList<int>{row.code});
        EXPECT_FALSE(sheet.isVisible());
    }
}

TEST_F(WidgetSheetsTest, ASecondSheetWaitsForTheFirst)
{
    QDialog first;
    QDialog second;
    begin(first);
    begin(second);
    begin(first);
    EXPECT_TRUE(first.isVisible());
    EXPECT_FALSE(second.isVisible());
    m_sheets->endSheet(&first, 1);
    QApplication::processEvents();
    EXPECT_FALSE(first.isVisible());
    EXPECT_TRUE(second.isVisible());
    m_sheets->endSheet(&second, 2);
    QApplication::processEvents();
    EXPECT_EQ(m_codes, (QList<int>{1, 2}));
}

TEST_F(WidgetSheetsTest, EverythingEndsWithTheWindowBelow)
{
    enum class How { Hidden, Destroyed, HiddenBefore };
    struct Row
    {
        const char *name;
        How how;
    };
    const Row rows[] = {{"hidden", How::Hidden},
                        {"destroyed", How::Destroyed},
                        {"hidden before", How::HiddenBefore}};
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        SetUp();
        QDialog sheet;
        if (row.how == How::HiddenBefore)
            m_window->hide();
        begin(sheet);
        begin(question(AlertStyle::Critical)); // waits behind the sheet
        if (row.how == How::Hidden)
            m_window->hide();
        if (row.how == How::Destroyed)
            m_window.reset();
        QApplication::processEvents();
        EXPECT_EQ(std::exchange(m_codes, {}), (QList<int>{0, 0}));
        EXPECT_FALSE(sheet.isVisible());
        EXPECT_FALSE(shownAlert());
    }
}

TEST_F(WidgetSheetsTest, NobodyIsCalledOnceTheSheetOrTheSheetsAreGone)
{
    auto sheet = std::make_unique<QDialog>();
    begin(*sheet);
    m_sheets->endSheet(sheet.get(), 1);
    sheet.reset();
    QApplication::processEvents();
    EXPECT_EQ(m_codes, QList<int>());

    QDialog kept;
    begin(kept);
    begin(question(AlertStyle::Critical));
    m_sheets->endSheet(&kept, 1);
    m_sheets.reset();
    QApplication::processEvents();
    EXPECT_EQ(m_codes, QList<int>());
    EXPECT_FALSE(kept.isVisible());
    EXPECT_FALSE(shownAlert());
}
