#pragma once

// Bringing messages in and taking them out: `tessaly-phone --import FILE` / `--export FILE`
// on the command line, and the home screen's Menu with "Import messages…" / "Export
// messages…".

#include "suite/telephony/archive/message_archive.h"

#include <QObject>
#include <QPointer>

#include <atomic>
#include <memory>
#include <thread>

class QProgressDialog;
class QPushButton;
class QWidget;

namespace tessaly::host {

struct HostOptions;

// What an import did, as the person reads it ("Imported 120 messages; 3 were already here;
// 2 skipped (2 MMS).").
QString importSummary(const telephony::archive::ImportCounts& counts);

// Runs --import or --export on the data directory's store without showing the phone; says what
// it did on stdout and why it failed on stderr. Returns the exit status.
int runArchiveCommand(const HostOptions& options);

// The home screen's Menu: import and export with a progress dialog that can be cancelled. The
// file is read or written on a thread of its own; the store changes on the UI thread only, in
// one short transaction at the end.
class ArchiveMenu final : public QObject {
    Q_OBJECT
public:
    enum Command { ImportMessages = 1, ExportMessages = 2 };

    // Adds the Menu button to the home screen.
    explicit ArchiveMenu(QWidget* homeScreen);
    ~ArchiveMenu() override;

    QPushButton* button() const { return button_; }
    void runImport(const QString& file);
    void runExport(const QString& file);
    bool busy() const { return worker_.joinable(); }

signals:
    // The import or export ended; `message` is what the person was told.
    void finished(bool ok, const QString& message);

private:
    void openMenu();
    void startProgress(const QString& label);
    void reportProgress(qint64 done, qint64 total);
    void end(bool ok, const QString& message);

    QWidget* home_;
    QPushButton* button_;
    QPointer<QProgressDialog> progress_;
    std::atomic<bool> cancel_{false};
    std::thread worker_;
};

} // namespace tessaly::host
