#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <memory>
#include <vector>

class QObject;
class QWidget;

namespace tarnwell::ui {

/// What a controller offers to an interface file: the outlets it wants filled and the actions that
/// controls may send. Names are spelled as the interface file spells them: an outlet by its object
/// name, an action by its selector ("doRestoreOriginal:").
class InterfaceOwner
{
public:
    /// Wants the widget of this name. The setter answers false when the widget is of another class
    /// than the outlet; the widget then counts as missing.
    void addOutlet(const QString &name, std::function<bool(QWidget *)> set);

    /// An outlet of a widget class, filled through a plain setter.
    template <typename Widget>
    void addOutlet(const QString &name, std::function<void(Widget *)> set)
    {
        addOutlet(name, std::function<bool(QWidget *)>([set](QWidget *widget) {
                      auto *typed = qobject_cast<Widget *>(widget);
                      if (typed)
                          set(typed);
                      return typed != nullptr;
                  }));
    }

    void addAction(const QString &selector, std::function<void(QObject *sender)> perform);

    /// Wants every widget whose dynamic property ("value": what a check box shows and sets;
    /// "hidden" and "shown": when a widget is) names something of the owner. The function answers
    /// false for a widget that can't be bound to it, which then counts as not bound.
    void addBinding(const QString &property, const QString &name,
                    std::function<bool(QWidget *)> bind);

private:
    friend class InterfaceFileLoader;
    std::map<QString, std::function<bool(QWidget *)>> m_outlets;
    std::map<QString, std::function<void(QObject *)>> m_actions;
    std::map<QString, std::function<bool(QWidget *)>> m_bindings; ///< by property and name
};

/// Names that one side has and the other does not. Empty when the two fit.
struct InterfaceMismatch
{
    QStringList outletsWithoutWidget;    ///< of the owner
    QStringList actionsWithoutControl;   ///< of the owner
    QStringList controlsWithoutAction;   ///< "objectName selector" of the file
    QStringList bindingsWithoutWidget{}; ///< "property name" of the owner
    QStringList widgetsWithoutBinding{}; ///< "objectName property name" of the file

    bool isEmpty() const
    {
        return outletsWithoutWidget.isEmpty() && actionsWithoutControl.isEmpty() &&
               controlsWithoutAction.isEmpty() && bindingsWithoutWidget.isEmpty() &&
               widgetsWithoutBinding.isEmpty();
    }
};

/// Loads interface files at run time and connects them to their owner.
///
/// A control's dynamic property "action" names the selector it sends when the user acts on it
/// (clicked of a button, activated of a combo box, returnPressed of a line edit). The dynamic
/// properties "tag" (an integer) and, of a table or outline, "identifiers" and "headings" (string
/// lists, one element a column) are left on the widget for the controller, the headings in the
/// user's language. Texts are translated in the context of the class that the file names.
class InterfaceFileLoader
{
public:
    InterfaceFileLoader();
    ~InterfaceFileLoader();

    /// Makes widgets of a class that the toolkit does not know.
    void registerClass(const QString &className, std::function<QWidget *(QWidget *parent)> make);

    /// Loads several files as one interface. Every top-level widget is returned, in the order of
    /// the files, parentless and owned by the caller; empty, with a message, when one file cannot
    /// be read, and then nothing was connected.
    std::vector<std::unique_ptr<QWidget>> load(const QStringList &paths,
                                               const InterfaceOwner &owner,
                                               InterfaceMismatch *mismatch, QString *errorMessage);

private:
    QHash<QString, std::function<QWidget *(QWidget *)>> m_classes;
};

} // namespace tarnwell::ui
