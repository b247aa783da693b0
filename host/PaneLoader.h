#pragma once

#include "ui/PreferencePane.h"

#include <QString>

#include <memory>
#include <variant>

class QWidget;

namespace tarnwell::host {

/// Why a pane cannot be shown, for the user.
struct PaneFailure
{
    QString message; ///< one or two sentences
    QString details; ///< for whoever is asked for help; may have several lines
};

/// A pane whose main view is loaded. The pane goes before its view.
struct LoadedPane
{
    QString name; ///< in the user's language
    std::unique_ptr<QWidget> view;
    std::unique_ptr<ui::PreferencePane> pane;
};

/// Loads the bundle that the context names, makes its principal class and loads the main view.
/// Whatever is wrong with the bundle is answered as a failure. Nothing of an executable that was
/// made for another interface is run.
std::variant<LoadedPane, PaneFailure> loadPane(const ui::PaneContext &context);

/// Runs a step of a pane's life. The failure when it throws, else nothing.
template <typename Step>
std::unique_ptr<PaneFailure> runGuarded(Step step);

PaneFailure failureOfException(const char *what);

template <typename Step>
std::unique_ptr<PaneFailure> runGuarded(Step step)
{
    try {
        step();
    } catch (const std::exception &exception) {
        return std::make_unique<PaneFailure>(failureOfException(exception.what()));
    } catch (...) {
        return std::make_unique<PaneFailure>(failureOfException("an unknown exception"));
    }
    return nullptr;
}

} // namespace tarnwell::host
