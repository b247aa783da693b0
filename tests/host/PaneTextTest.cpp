#include "host/PaneText.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QStandardItemModel>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(PaneText, SaysWhatTheShownWidgetsSay)
{
    QWidget view;
    auto *layout = new QVBoxLayout(&view);
    auto *box = new QCheckBox(u"Bread && &Butter"_s);
    box->setChecked(true);
    auto *pages = new QTabWidget;
    auto *table = new QTableView;
    QStandardItemModel model(1, 2);
    model.setHorizontalHeaderLabels({u"Item"_s, u"Shortcut"_s});
    model.setItem(0, 0, new QStandardItem(u"Two\nlines"_s));
    model.setItem(0, 1, new QStandardItem(u"⌘T"_s));
    table->setModel(&model);
    auto *popup = new QComboBox;
    popup->addItems({u"One"_s, u"Other"_s});
    pages->addTab(table, u"First"_s);
    pages->addTab(new QLabel(u"of the second page"_s), u"Second"_s);
    auto *hidden = new QLabel(u"hidden"_s);
    for (QWidget *widget : std::initializer_list<QWidget *>{new QLabel(u"<b>Big</b> title"_s), box,
                                                            popup, pages, hidden})
        layout->addWidget(widget);
    view.findChild<QLabel *>()->setTextFormat(Qt::RichText);
    hidden->hide();

    EXPECT_EQ(tarnwell::host::textOf(&view),
              u"Big title\n[x] Bread & Butter\nOne\nItem\tShortcut\nTwo lines\t⌘T\n"_s);
}
