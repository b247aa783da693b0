#pragma once

#include "ports/OpenPanel.h"

#include <optional>
#include <utility>

namespace tarnwell::fakes {

/// What a test sees of the panel that is up, and how it answers in the user's place.
///
/// Nothing is answered by itself; a panel that is begun while another is up takes its place.
class FakeOpenPanelControl
{
public:
    enum class Kind { None, Applications, FileToOpen, FileToSave };

    Kind shown() const { return m_kind; }
    /// Of a panel for applications.
    const ports::ApplicationPanel &panel() const { return m_panel; }
    /// Of a panel for files.
    QString title() const { return m_title; }
    QStringList filters() const { return m_filters; }
    QString suggestedName() const { return m_suggestedName; }
    QWidget *onWindowOf() const { return m_onWindowOf; }

    /// Chooses, as the button that confirms does. False when no such panel is up.
    bool chooseApplications(const QStringList &paths)
    {
        return endApplications(ports::OpenPanel::okButton, paths);
    }
    bool chooseFile(const QString &path)
    {
        if (m_kind != Kind::FileToOpen && m_kind != Kind::FileToSave)
            return false;
        m_kind = Kind::None;
        std::exchange(m_fileDidEnd, nullptr)(path);
        return true;
    }
    bool cancel()
    {
        return m_kind == Kind::Applications ? endApplications(ports::OpenPanel::cancelButton, {})
                                            : chooseFile({});
    }

private:
    friend class FakeOpenPanel;

    bool endApplications(int returnCode, const QStringList &paths)
    {
        if (m_kind != Kind::Applications)
            return false;
        m_kind = Kind::None;
        std::exchange(m_applicationsDidEnd, nullptr)(returnCode, paths);
        return true;
    }

    Kind m_kind = Kind::None;
    ports::ApplicationPanel m_panel;
    QString m_title;
    QStringList m_filters;
    QString m_suggestedName;
    QWidget *m_onWindowOf = nullptr;
    ports::OpenPanel::ApplicationsDidEnd m_applicationsDidEnd;
    ports::OpenPanel::FileDidEnd m_fileDidEnd;
};

class FakeOpenPanel final : public ports::OpenPanel
{
public:
    FakeOpenPanelControl &control() { return m_control; }

    void chooseApplications(const ports::ApplicationPanel &panel, QWidget *onWindowOf,
                            ApplicationsDidEnd didEnd) override
    {
        m_control.m_kind = FakeOpenPanelControl::Kind::Applications;
        m_control.m_panel = panel;
        m_control.m_onWindowOf = onWindowOf;
        m_control.m_applicationsDidEnd = std::move(didEnd);
    }

    void chooseFileToOpen(const QString &title, const QStringList &filters, QWidget *onWindowOf,
                          FileDidEnd didEnd) override
    {
        beginFile(FakeOpenPanelControl::Kind::FileToOpen, title, onWindowOf, std::move(didEnd));
        m_control.m_filters = filters;
    }

    void chooseFileToSave(const QString &title, const QString &suggestedName, QWidget *onWindowOf,
                          FileDidEnd didEnd) override
    {
        beginFile(FakeOpenPanelControl::Kind::FileToSave, title, onWindowOf, std::move(didEnd));
        m_control.m_suggestedName = suggestedName;
    }

private:
    void beginFile(FakeOpenPanelControl::Kind kind, const QString &title, QWidget *onWindowOf,
                   FileDidEnd didEnd)
    {
        m_control.m_kind = kind;
        m_control.m_title = title;
        m_control.m_onWindowOf = onWindowOf;
        m_control.m_fileDidEnd = std::move(didEnd);
    }

    FakeOpenPanelControl m_control;
};

} // namespace tarnwell::fakes
