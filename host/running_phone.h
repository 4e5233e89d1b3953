#pragma once

// One phone per data directory. A second start on the same directory (the desktop opening an
// sms: link, a second click in the launcher) hands its link to the phone that runs and ends:
// two programs writing the same registry files and store would lose each other's changes.

#include <QObject>
#include <QString>

#include <memory>

class QLocalServer;

namespace tessaly::host {

// The local socket the phone of `dataDirectory` listens on (in the user's runtime folder, named
// after the directory's canonical path).
QString runningPhoneName(const QString& dataDirectory);

enum class HandOver {
    NoPhone,    // nobody listens: this start is the phone
    HandedOver, // the running phone took the link
    NoAnswer,   // a phone listens but did not answer in time: better not start a second one
};

// Hands `link` (empty: just come to the front) to the phone listening on `name`.
HandOver handToRunningPhone(const QString& name, const QString& link, int timeoutMs = 3000);

// The running phone's side.
class RunningPhoneListener : public QObject {
    Q_OBJECT
public:
    RunningPhoneListener();
    ~RunningPhoneListener() override;

    // Listens on `name`, taking over a socket file a crashed phone left. False with `error` set
    // when it cannot.
    bool listen(const QString& name, QString* error);

signals:
    // Another start asked this phone to come forward, with an sms: link or an empty string.
    void handedOver(const QString& link);

private:
    void acceptConnection();

    std::unique_ptr<QLocalServer> server_;
};

} // namespace tessaly::host
