// Every control of the interface files can be reached with the keyboard and is told by a screen
// reader.

#include "ui/InterfaceFile.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTextEdit>
#include <QTranslator>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QDir resources()
{
    return QDir(qEnvironmentVariable("BUNDLE_RESOURCES"));
}

/// One file in one language; an empty language is English.
struct FileInLanguage
{
    QString file;
    QString language;
};

class InterfaceAccessibilityTest : public testing::TestWithParam<FileInLanguage>
{
protected:
    void SetUp() override
    {
        if (!GetParam().language.isEmpty()) {
            ASSERT_TRUE(m_translator.load(
                resources().filePath(u"tarnwell_%1.qm"_s.arg(GetParam().language))));
            QCoreApplication::installTranslator(&m_translator);
        }
        tarnwell::ui::InterfaceFileLoader loader;
        loader.registerClass(u"QCView"_s, [](QWidget *parent) { return new QWidget(parent); });
        loader.registerClass(u"LiWindow"_s, [](QWidget *parent) { return new QDialog(parent); });
        loader.registerClass(u"LiTextField"_s,
                             [](QWidget *parent) { return new QLineEdit(parent); });
        QString error;
        m_roots = loader.load({resources().filePath(GetParam().file)}, {}, nullptr, &error);
        ASSERT_EQ(m_roots.size(), 1U) << qPrintable(error);
    }

    void TearDown() override { QCoreApplication::removeTranslator(&m_translator); }

    QWidget &root() { return *m_roots.front(); }

    static bool isControl(const QWidget *widget)
    {
        return !widget->objectName().startsWith("qt_"_L1) &&
               (qobject_cast<const QAbstractButton *>(widget) ||
                qobject_cast<const QAbstractItemView *>(widget) ||
                qobject_cast<const QComboBox *>(widget) ||
                qobject_cast<const QLineEdit *>(widget) ||
                qobject_cast<const QTextEdit *>(widget) ||
                qobject_cast<const QTabWidget *>(widget));
    }

    /// The controls of the file, without the parts that the toolkit makes them of.
    QList<QWidget *> controls()
    {
        QList<QWidget *> result;
        for (QWidget *widget : root().findChildren<QWidget *>()) {
            const auto name = widget->objectName();
            if (isControl(widget) && !name.isEmpty() && !name.startsWith("Scroll"_L1))
                result.append(widget);
        }
        return result;
    }

    QTranslator m_translator;
    std::vector<std::unique_ptr<QWidget>> m_roots;
};

} // namespace

TEST_P(InterfaceAccessibilityTest, ControlsHaveANameAndADescription)
{
    for (const QWidget *control : controls()) {
        EXPECT_FALSE(control->accessibleName().isEmpty()) << qPrintable(control->objectName());
        EXPECT_FALSE(control->accessibleDescription().isEmpty())
            << qPrintable(control->objectName());
    }
}

TEST_P(InterfaceAccessibilityTest, MnemonicsOfAPageAreUnlikeOneAnother)
{
    const auto mnemonic = [](const QString &text) {
        return QKeySequence::mnemonic(text).toString();
    };
    QStringList everywhere;
    QList<QWidget *> pages;
    if (const auto *tabs = root().findChild<QTabWidget *>()) {
        for (int i = 0; i < tabs->count(); ++i) {
            everywhere.append(mnemonic(tabs->tabText(i)));
            pages.append(tabs->widget(i));
        }
        for (const QString &name : {u"enabledCheckbox"_s, u"storeAgainButton"_s})
            everywhere.append(mnemonic(root().findChild<QAbstractButton *>(name)->text()));
    } else {
        pages.append(&root());
    }
    for (const QWidget *page : std::as_const(pages)) {
        QStringList used = everywhere;
        for (const QWidget *widget : page->findChildren<QWidget *>()) {
            const auto *label = qobject_cast<const QLabel *>(widget);
            const auto *button = qobject_cast<const QAbstractButton *>(widget);
            const QString keys = label && label->buddy() ? mnemonic(label->text())
                                 : button                ? mnemonic(button->text())
                                                         : QString();
            if (keys.isEmpty())
                continue;
            EXPECT_FALSE(used.contains(keys))
                << qPrintable(page->objectName()) << ' ' << qPrintable(widget->objectName());
            used.append(keys);
        }
    }
}

TEST_P(InterfaceAccessibilityTest, FitsASmallScreen)
{
    const QSize size = root().minimumSizeHint();
    EXPECT_LE(size.width(), 640);
    EXPECT_LE(size.height(), 480);
}

TEST_P(InterfaceAccessibilityTest, EveryTextIsTranslated)
{
    if (GetParam().language.isEmpty())
        return;
    QFile file(resources().filePath(GetParam().file));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    QByteArray context;
    int texts = 0;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == "class"_L1 && context.isEmpty())
            context = xml.readElementText().toUtf8();
        else if (xml.name() == "stringlist"_L1 && xml.attributes().hasAttribute("notr"_L1))
            xml.skipCurrentElement();
        if (xml.name() != "string"_L1 || !xml.isStartElement() ||
            xml.attributes().hasAttribute("notr"_L1))
            continue;
        const QByteArray text = xml.readElementText().toUtf8();
        if (text.isEmpty())
            continue;
        ++texts;
        EXPECT_FALSE(m_translator.translate(context.constData(), text.constData()).isEmpty())
            << text.constData();
    }
    EXPECT_GT(texts, 0);
}

std::vector<FileInLanguage> filesInLanguages()
{
    std::vector<FileInLanguage> rows;
    for (const QString &file :
         {u"Main.ui"_s, u"AboutSheet.ui"_s, u"HotKeySheet.ui"_s, u"TutorialSheet.ui"_s,
          u"BringBackSheet.ui"_s, u"UpdaterView.ui"_s, u"UpdaterPrivacy.ui"_s}) {
        for (const QString &language : {u""_s, u"de"_s})
            rows.push_back({file, language});
    }
    return rows;
}

INSTANTIATE_TEST_SUITE_P(Files, InterfaceAccessibilityTest, testing::ValuesIn(filesInLanguages()),
                         [](const auto &row) {
                             return (row.param.file.section(u'.', 0, 0) + u'_' +
                                     (row.param.language.isEmpty() ? u"en"_s : row.param.language))
                                 .toStdString();
                         });
