#pragma once

#include "FakeHome.h"

#include "ports/Applications.h"

namespace tarnwell::fakes {

/// What a test sees and decides of FakeApplications.
class FakeApplicationsControl
{
public:
    struct Opened
    {
        QString path;
        QString document;
        QStringList arguments = {}; ///< given instead of a document

        friend bool operator==(const Opened &, const Opened &) = default;
    };

    /// Every application that was started, in order; failed starts are not among them.
    QList<Opened> opened;
    /// What the next starts of an existing application answer.
    int openStatus = 0;
    /// The process of the next one that is started.
    qint64 nextProcess = 0;
    int refreshes = 0;
};

/// The applications of a described home.
class FakeApplications : public ports::Applications
{
public:
    explicit FakeApplications(const FakeHome &home)
        : m_home(home)
    {}

    FakeApplicationsControl &control() { return m_control; }

    QString displayName(const QString &path) const override
    {
        const FakeItem *item = m_home.find(path);
        return item ? FakeHome::shownName(*item) : QString();
    }

    std::optional<ports::ItemInfo> itemInfo(const QString &path) const override
    {
        const FakeItem *item = m_home.find(path);
        if (!item)
            return std::nullopt;
        return ports::ItemInfo{item->fileType, item->creator, item->isContainer};
    }

    QString applicationForIdentifier(const QString &identifier) const override
    {
        for (const auto &[path, item] : m_home.items()) {
            if (!item.identifier.isEmpty() &&
                item.identifier.compare(identifier, Qt::CaseInsensitive) == 0)
                return path;
        }
        return {};
    }

    QString applicationForCreator(quint32 creator) const override
    {
        for (const auto &[path, item] : m_home.items()) {
            if (creator != 0 && item.isContainer && item.creator == creator)
                return path;
        }
        return {};
    }

    QList<ports::InstalledApplication> installedApplications() const override
    {
        QList<ports::InstalledApplication> result;
        for (const auto &[path, item] : m_home.items()) {
            if (!item.identifier.isEmpty())
                result.append({path, item.identifier, FakeHome::shownName(item)});
        }
        return result;
    }

    void refresh() override { ++m_control.refreshes; }

    int openApplication(const QString &path, const QString &document,
                        qint64 *processId = nullptr) override
    {
        return open({path, document, {}}, processId);
    }

    int openApplicationWithArguments(const QString &path, const QStringList &arguments,
                                     qint64 *processId = nullptr) override
    {
        return open({path, {}, arguments}, processId);
    }

private:
    int open(const FakeApplicationsControl::Opened &request, qint64 *processId)
    {
        if (processId)
            *processId = m_control.openStatus == 0 ? m_control.nextProcess : 0;
        const FakeItem *item = m_home.find(request.path);
        if (!item)
            return -43;
        if (!item->isContainer)
            return -10814;
        if (m_control.openStatus == 0)
            m_control.opened.append(request);
        return m_control.openStatus;
    }

    const FakeHome &m_home;
    FakeApplicationsControl m_control;
};

} // namespace tarnwell::fakes
