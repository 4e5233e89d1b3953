#pragma once

// Collects what is written to the Qt log (the host's log) while it exists.

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <algorithm>

namespace module_test {

class LogCapture {
public:
    LogCapture()
        : previous_(qInstallMessageHandler(&LogCapture::handle)) {
        active() = this;
    }
    ~LogCapture() {
        qInstallMessageHandler(previous_);
        active() = nullptr;
    }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    const QStringList& lines() const { return lines_; }
    bool contains(const QString& part) const {
        return std::any_of(lines_.begin(), lines_.end(),
                           [&part](const QString& line) { return line.contains(part); });
    }
    void clear() { lines_.clear(); }

private:
    static LogCapture*& active() {
        static LogCapture* capture = nullptr;
        return capture;
    }
    static void handle(QtMsgType, const QMessageLogContext&, const QString& message) {
        if (active())
            active()->lines_ << message;
    }

    QtMessageHandler previous_;
    QStringList lines_;
};

} // namespace module_test
