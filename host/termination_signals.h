#pragma once

// SIGTERM, SIGINT and SIGHUP (logout, `systemctl stop`, Ctrl+C, a closed terminal) end the
// phone as closing its window does: the event loop returns, the module is stopped and the
// data files are checkpointed and closed, so that no journal is left behind. The handler only
// writes a byte into a pipe; the event loop reads it (the self-pipe way).

#include <QObject>

class QSocketNotifier;

namespace tessaly::host {

class TerminationSignals final : public QObject {
    Q_OBJECT
public:
    // Installs the handlers; the event loop exits with status 0 when one of the signals comes.
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

    // The signal that ended the loop, 0 while none came.
    int received() const { return received_; }

private:
    QSocketNotifier* notifier_ = nullptr;
    int received_ = 0;
};

} // namespace tessaly::host
