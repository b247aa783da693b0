#include "ui/InterfaceFile.h"

#include "foundation/BoundedFile.h"

#include <QAbstractButton>
#include <QBuffer>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QScopeGuard>
#include <QUiLoader>
#include <QVariant>
#include <QWidget>
#include <QXmlStreamReader>

#include <set>

namespace tarnwell::ui {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largestFile = 16LL * 1024 * 1024;

using WidgetMaker = std::function<QWidget *(QWidget *)>;

/// The toolkit's reader, which also knows the classes that were registered.
class FileReader final : public QUiLoader
{
public:
    explicit FileReader(const QHash<QString, WidgetMaker> &classes)
        : m_classes(classes)
    {}

    QWidget *createWidget(const QString &className, QWidget *parent, const QString &name) override
    {
        const auto known = m_classes.constFind(className);
        if (known == m_classes.constEnd())
            return QUiLoader::createWidget(className, parent, name);
        QWidget *widget = (*known)(parent);
        if (widget)
            widget->setObjectName(name);
        return widget;
    }

private:
    const QHash<QString, WidgetMaker> &m_classes;
};

/// The toolkit's reader loads every plug-in of the form editor when it is made: tens of
/// milliseconds and a second toolkit in memory, for classes that no interface file here uses. It
/// finds none while there is no library path.
std::unique_ptr<FileReader> makeReader(const QHash<QString, WidgetMaker> &classes)
{
    const QStringList paths = QCoreApplication::libraryPaths();
    QCoreApplication::setLibraryPaths({});
    const auto restore = qScopeGuard([&paths] { QCoreApplication::setLibraryPaths(paths); });
    return std::make_unique<FileReader>(classes);
}

/// The context that the texts of a file are translated in: the class that the file names.
QString translationContext(const QByteArray &bytes)
{
    QXmlStreamReader xml(bytes);
    while (xml.readNextStartElement()) {
        if (xml.name() == "class"_L1)
            return xml.readElementText();
        if (xml.name() != "ui"_L1)
            xml.skipCurrentElement();
    }
    return {};
}

/// The toolkit's reader translates single texts but no lists of them.
void translateHeadings(QWidget &root, const QString &context)
{
    const QByteArray contextName = context.toUtf8();
    QList<QWidget *> widgets = root.findChildren<QWidget *>();
    widgets.append(&root);
    for (QWidget *widget : std::as_const(widgets)) {
        QStringList headings = widget->property("headings").toStringList();
        if (headings.isEmpty())
            continue;
        for (QString &heading : headings) {
            if (!heading.isEmpty())
                heading = QCoreApplication::translate(contextName.constData(),
                                                      heading.toUtf8().constData());
        }
        widget->setProperty("headings", headings);
    }
}

QString cannotRead(const QString &path, const QString &reason)
{
    return u"The interface file %1 cannot be read: %2"_s.arg(QFileInfo(path).fileName(), reason);
}

/// Connects the signal by which the user acts on a control. False for a class that has none.
bool connectAction(QWidget *control, const std::function<void(QObject *)> &perform)
{
    const auto send = [control, perform] { perform(control); };
    if (auto *button = qobject_cast<QAbstractButton *>(control))
        return QObject::connect(button, &QAbstractButton::clicked, control, send);
    if (auto *popup = qobject_cast<QComboBox *>(control))
        return QObject::connect(popup, &QComboBox::activated, control, send);
    if (auto *field = qobject_cast<QLineEdit *>(control))
        return QObject::connect(field, &QLineEdit::returnPressed, control, send);
    return false;
}

/// What a widget wants to be bound to, as "property name".
QStringList bindingsOf(const QWidget &widget)
{
    QStringList bindings;
    const QList<QByteArray> properties = widget.dynamicPropertyNames();
    for (const char *const property : {"value", "hidden", "shown"}) {
        if (properties.contains(property))
            bindings.append(QLatin1StringView(property) + u' ' +
                            widget.property(property).toString());
    }
    return bindings;
}

/// Every widget below the roots and the roots themselves, in the order of the files.
QList<QWidget *> allWidgets(const std::vector<std::unique_ptr<QWidget>> &roots)
{
    QList<QWidget *> widgets;
    for (const auto &root : roots) {
        widgets.append(root.get());
        widgets.append(root->findChildren<QWidget *>());
    }
    return widgets;
}

} // namespace

void InterfaceOwner::addOutlet(const QString &name, std::function<bool(QWidget *)> set)
{
    m_outlets.insert_or_assign(name, std::move(set));
}

void InterfaceOwner::addAction(const QString &selector,
                               std::function<void(QObject *sender)> perform)
{
    m_actions.insert_or_assign(selector, std::move(perform));
}

void InterfaceOwner::addBinding(const QString &property, const QString &name,
                                std::function<bool(QWidget *)> bind)
{
    m_bindings.insert_or_assign(property + u' ' + name, std::move(bind));
}

InterfaceFileLoader::InterfaceFileLoader() = default;
InterfaceFileLoader::~InterfaceFileLoader() = default;

void InterfaceFileLoader::registerClass(const QString &className, WidgetMaker make)
{
    m_classes.insert(className, std::move(make));
}

std::vector<std::unique_ptr<QWidget>> InterfaceFileLoader::load(const QStringList &paths,
                                                                const InterfaceOwner &owner,
                                                                InterfaceMismatch *mismatch,
                                                                QString *errorMessage)
{
    const auto reader = makeReader(m_classes);
    std::vector<std::unique_ptr<QWidget>> roots;
    for (const QString &path : paths) {
        QString reason;
        std::unique_ptr<QWidget> root;
        foundation::FileReadError fileError;
        if (auto bytes = foundation::readBoundedFile(path, largestFile, &fileError)) {
            reader->setWorkingDirectory(QFileInfo(path).absoluteDir());
            QBuffer buffer(&*bytes);
            root.reset(reader->load(&buffer));
            reason = reader->errorString();
            if (root)
                translateHeadings(*root, translationContext(*bytes));
        } else {
            reason = fileError.inWords(largestFile);
        }
        if (!root) {
            if (errorMessage)
                *errorMessage = cannotRead(path, reason.trimmed());
            return {};
        }
        roots.push_back(std::move(root));
    }

    InterfaceMismatch found;
    QHash<QString, QWidget *> named;
    std::set<QString> sentActions;
    std::set<QString> bound;
    for (QWidget *widget : allWidgets(roots)) {
        if (!named.contains(widget->objectName()))
            named.insert(widget->objectName(), widget);
        for (const QString &wanted : bindingsOf(*widget)) {
            const auto binding = owner.m_bindings.find(wanted);
            if (binding != owner.m_bindings.end() && binding->second(widget))
                bound.insert(wanted);
            else
                found.widgetsWithoutBinding.append(widget->objectName() + u' ' + wanted);
        }
        const QString selector = widget->property("action").toString();
        if (selector.isEmpty())
            continue;
        const auto action = owner.m_actions.find(selector);
        if (action != owner.m_actions.end() && connectAction(widget, action->second))
            sentActions.insert(selector);
        else
            found.controlsWithoutAction.append(widget->objectName() + u' ' + selector);
    }
    for (const auto &[name, set] : owner.m_outlets) {
        QWidget *widget = named.value(name);
        if (!widget || !set(widget))
            found.outletsWithoutWidget.append(name);
    }
    for (const auto &[selector, perform] : owner.m_actions) {
        if (!sentActions.contains(selector))
            found.actionsWithoutControl.append(selector);
    }
    for (const auto &[wanted, bind] : owner.m_bindings) {
        if (!bound.contains(wanted))
            found.bindingsWithoutWidget.append(wanted);
    }
    if (mismatch)
        *mismatch = found;
    return roots;
}

} // namespace tarnwell::ui
