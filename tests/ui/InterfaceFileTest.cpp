#include "ui/InterfaceFile.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using tarnwell::ui::InterfaceFileLoader;
using tarnwell::ui::InterfaceMismatch;
using tarnwell::ui::InterfaceOwner;

namespace {

QByteArray interface(const QByteArray &widgets, const QByteArray &rest = {})
{
    return "<?xml version=\"1.0\"?><ui version=\"4.0\"><class>Test</class>"
           "<widget class=\"QWidget\" name=\"root\">" +
           widgets + "</widget>" + rest + "</ui>";
}

QByteArray control(const QByteArray &className, const QByteArray &name,
                   const QByteArray &action = {})
{
    QByteArray xml = "<widget class=\"" + className + "\" name=\"" + name + "\">";
    if (!action.isEmpty())
        xml += "<property name=\"action\" stdset=\"0\"><string>" + action + "</string></property>";
    return xml + "</widget>";
}

class InterfaceFileTest : public testing::Test
{
protected:
    QString file(const QByteArray &bytes)
    {
        const QString path = m_folder.filePath(u"%1.ui"_s.arg(++m_count));
        QFile out(path);
        out.open(QIODevice::WriteOnly);
        out.write(bytes);
        return path;
    }

    auto load(const QStringList &paths)
    {
        return m_loader.load(paths, m_owner, &m_mismatch, &m_error);
    }

    QTemporaryDir m_folder;
    int m_count = 0;
    InterfaceFileLoader m_loader;
    InterfaceOwner m_owner;
    InterfaceMismatch m_mismatch;
    QString m_error;
};

} // namespace

TEST_F(InterfaceFileTest, ReportsWhatIsLeftOverOnEitherSide)
{
    struct Row
    {
        const char *name;
        QByteArray widgets;
        QStringList outlets;
        QStringList actions;
        InterfaceMismatch expected;
    };
    const Row rows[] = {
        {"all fit", control("QCheckBox", "box", "doIt:"), {u"box"_s}, {u"doIt:"_s}, {}},
        {"root is an outlet", {}, {u"root"_s}, {}, {}},
        {"missing outlet", {}, {u"box"_s}, {}, {{u"box"_s}, {}, {}}},
        {"missing action",
         control("QCheckBox", "box", "doIt:"),
         {},
         {},
         {{}, {}, {u"box doIt:"_s}}},
        {"unused action", {}, {}, {u"doIt:"_s}, {{}, {u"doIt:"_s}, {}}},
        {"unlike name",
         control("QCheckBox", "Box", "doit:"),
         {u"box"_s},
         {u"doIt:"_s},
         {{u"box"_s}, {u"doIt:"_s}, {u"Box doit:"_s}}},
        {"control that cannot act",
         control("QLabel", "label", "doIt:"),
         {},
         {u"doIt:"_s},
         {{}, {u"doIt:"_s}, {u"label doIt:"_s}}},
        {"two controls, one action",
         control("QPushButton", "one", "doIt:") + control("QPushButton", "two", "doIt:"),
         {},
         {u"doIt:"_s},
         {}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        InterfaceOwner owner;
        for (const QString &outlet : row.outlets)
            owner.addOutlet<QWidget>(outlet, [](QWidget *) {});
        for (const QString &action : row.actions)
            owner.addAction(action, [](QObject *) {});
        InterfaceMismatch mismatch;
        QString error;
        ASSERT_EQ(m_loader.load({file(interface(row.widgets))}, owner, &mismatch, &error).size(),
                  1U);
        EXPECT_EQ(mismatch.outletsWithoutWidget, row.expected.outletsWithoutWidget);
        EXPECT_EQ(mismatch.actionsWithoutControl, row.expected.actionsWithoutControl);
        EXPECT_EQ(mismatch.controlsWithoutAction, row.expected.controlsWithoutAction);
    }
}

TEST_F(InterfaceFileTest, AnOutletOfAnotherClassCountsAsMissing)
{
    QCheckBox *box = nullptr;
    m_owner.addOutlet<QCheckBox>(u"box"_s, [&](QCheckBox *widget) { box = widget; });
    const auto roots = load({file(interface(control("QLabel", "box")))});
    EXPECT_EQ(m_mismatch.outletsWithoutWidget, QStringList{u"box"_s});
    EXPECT_EQ(box, nullptr);
}

TEST_F(InterfaceFileTest, ControlsSendTheirActionWhenTheUserActs)
{
    QStringList sent;
    m_owner.addAction(u"doIt:"_s, [&](QObject *sender) { sent.append(sender->objectName()); });
    const auto roots = load({file(interface(control("QPushButton", "button", "doIt:") +
                                            control("QLineEdit", "field", "doIt:") +
                                            control("QComboBox", "popup", "doIt:")))});
    ASSERT_EQ(roots.size(), 1U);
    QWidget &root = *roots.front();
    auto *popup = root.findChild<QComboBox *>();
    popup->addItems({u"a"_s, u"b"_s});
    popup->setCurrentIndex(1); // the program's choice, not the user's
    EXPECT_EQ(sent, QStringList());
    root.findChild<QPushButton *>()->click();
    QTest::keyClick(root.findChild<QLineEdit *>(u"field"_s), Qt::Key_Return);
    QTest::keyClick(popup, Qt::Key_Up);
    EXPECT_EQ(sent, (QStringList{u"button"_s, u"field"_s, u"popup"_s}));
}

TEST_F(InterfaceFileTest, BindsWhatNamesSomethingOfTheOwner)
{
    QStringList bound;
    const auto bind = [&](QWidget *widget) {
        bound.append(widget->objectName());
        return widget->objectName() != u"refused"_s;
    };
    m_owner.addBinding(u"value"_s, u"loudness"_s, bind);
    m_owner.addBinding(u"hidden"_s, u"isSilent"_s, bind);
    m_owner.addBinding(u"hidden"_s, u"isFree"_s, bind);
    const auto bindable = [](const char *name, const char *property, const char *to) {
        return QByteArray("<widget class=\"QLabel\" name=\"") + name + "\"><property name=\"" +
               property + "\" stdset=\"0\"><string>" + to + "</string></property></widget>";
    };
    const auto roots = load({file(interface(
        bindable("one", "value", "loudness") + bindable("two", "hidden", "isSilent") +
        bindable("three", "hidden", "isSilent") + bindable("refused", "value", "loudness") +
        bindable("lost", "shown", "isSilent") +
        // A property of the class itself binds nothing.
        "<widget class=\"QSpinBox\" name=\"four\"><property name=\"value\"><number>3</number>"
        "</property></widget>"))});
    ASSERT_EQ(roots.size(), 1U);
    EXPECT_EQ(bound, (QStringList{u"one"_s, u"two"_s, u"three"_s, u"refused"_s}));
    EXPECT_EQ(m_mismatch.bindingsWithoutWidget, QStringList{u"hidden isFree"_s});
    EXPECT_EQ(m_mismatch.widgetsWithoutBinding,
              (QStringList{u"refused value loudness"_s, u"lost shown isSilent"_s}));
}

TEST_F(InterfaceFileTest, KeepsThePropertiesOfTheController)
{
    QWidget *table = nullptr;
    m_owner.addOutlet<QWidget>(u"table"_s, [&](QWidget *widget) { table = widget; });
    const auto roots =
        load({file(interface("<widget class=\"QTableView\" name=\"table\">"
                             "<property name=\"tag\" stdset=\"0\"><number>3</number></property>"
                             "<property name=\"identifiers\" stdset=\"0\"><stringlist>"
                             "<string>13</string><string>1</string></stringlist></property>"
                             "</widget>"))});
    ASSERT_TRUE(table);
    EXPECT_EQ(table->property("tag").toInt(), 3);
    EXPECT_EQ(table->property("identifiers").toStringList(), (QStringList{u"13"_s, u"1"_s}));
}

TEST_F(InterfaceFileTest, TranslatesTextsAndHeadingsInTheContextOfTheFile)
{
    class Reversing : public QTranslator
    {
    public:
        QString translate(const char *context, const char *text, const char *, int) const override
        {
            QString reversed = QString::fromUtf8(text);
            std::reverse(reversed.begin(), reversed.end());
            return qstrcmp(context, "Test") == 0 ? reversed : QString();
        }
        bool isEmpty() const override { return false; }
    };
    Reversing translator;
    QCoreApplication::installTranslator(&translator);
    const auto roots = load(
        {file(interface("<property name=\"windowTitle\"><string>Title</string></property>"
                        "<property name=\"headings\" stdset=\"0\"><stringlist>"
                        "<string></string><string>Menu</string></stringlist></property>"
                        "<property name=\"identifiers\" stdset=\"0\"><stringlist notr=\"true\">"
                        "<string>13</string><string>01</string></stringlist></property>"))});
    QCoreApplication::removeTranslator(&translator);
    ASSERT_EQ(roots.size(), 1U);
    EXPECT_EQ(roots.front()->windowTitle(), u"eltiT"_s);
    EXPECT_EQ(roots.front()->property("headings").toStringList(), (QStringList{u""_s, u"uneM"_s}));
    EXPECT_EQ(roots.front()->property("identifiers").toStringList(),
              (QStringList{u"13"_s, u"01"_s}));
}

TEST_F(InterfaceFileTest, LoadsSeveralFilesAsOneInterface)
{
    QWidget *second = nullptr;
    m_owner.addOutlet<QWidget>(u"second"_s, [&](QWidget *widget) { second = widget; });
    const auto roots = load({file(interface(control("QLabel", "first"))),
                             file(interface(control("QLabel", "second")))});
    ASSERT_EQ(roots.size(), 2U);
    EXPECT_TRUE(roots.front()->findChild<QWidget *>(u"first"_s));
    EXPECT_TRUE(second && roots.back()->isAncestorOf(second));
    EXPECT_EQ(roots.back()->parent(), nullptr);
}

TEST_F(InterfaceFileTest, MakesWidgetsOfRegisteredClasses)
{
    m_loader.registerClass(u"Gauge"_s, [](QWidget *parent) { return new QLabel(parent); });
    const auto custom = QByteArray("<customwidgets><customwidget><class>Gauge</class>"
                                   "<extends>QWidget</extends></customwidget></customwidgets>");
    const auto roots = load({file(interface(control("Gauge", "gauge"), custom))});
    ASSERT_EQ(roots.size(), 1U);
    EXPECT_TRUE(roots.front()->findChild<QLabel *>(u"gauge"_s));
}

TEST_F(InterfaceFileTest, AFileThatCannotBeReadIsAMessage)
{
    struct Row
    {
        const char *name;
        QString path;
    };
    QByteArray deep;
    for (int i = 0; i < 500; ++i)
        deep += "<widget class=\"QWidget\" name=\"w\">";
    const Row rows[] = {
        {"absent", m_folder.filePath(u"absent.ui"_s)},
        {"empty", file({})},
        {"text", file("This is no interface.")},
        {"cut off", file(interface(control("QLabel", "label")).chopped(20))},
        {"cut off in the depth", file(interface(deep).chopped(30))},
        {"no widget", file("<ui version=\"4.0\"><class>Test</class></ui>")},
        {"other document", file("<plist version=\"1.0\"><dict/></plist>")},
        {"folder", m_folder.path()},
        {"binary", file(QByteArray(1000, '\xff'))},
    };
    bool connected = false;
    m_owner.addOutlet<QWidget>(u"root"_s, [&](QWidget *) { connected = true; });
    const QString good = file(interface({}));
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        m_error.clear();
        EXPECT_TRUE(load({good, row.path}).empty());
        EXPECT_TRUE(m_error.contains(QFileInfo(row.path).fileName())) << qPrintable(m_error);
        EXPECT_FALSE(m_error.endsWith(u": "_s)) << "it says why";
        EXPECT_FALSE(connected);
    }
}
