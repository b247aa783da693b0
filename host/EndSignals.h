#pragma once

#include <QObject>

class QSocketNotifier;

namespace tarnwell::host {

/// Tells, from the event loop, that the program was told to end: by SIGTERM, SIGINT or SIGHUP. A
/// second signal of the kind ends the program at once. One object at a time; a signal that is
/// ignored stays ignored.
class EndSignals final : public QObject
{
    Q_OBJECT

public:
    explicit EndSignals(QObject *parent = nullptr);
    ~EndSignals() override;

Q_SIGNALS:
    void received(int signal);

private:
    void readSignal(int descriptor);

    QSocketNotifier *m_notifier = nullptr;
};

} // namespace tarnwell::host
