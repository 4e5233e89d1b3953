#include "host/archive_command.h"

#include "host/host_options.h"

#include "framework/datadir.h"
#include "framework/resources/resource_model.h"
#include "framework/ui/menu.h"
#include "framework/ui/useragent.h"
#include "suite/telephony/telephony.h"

#include <QLayout>
#include <QProgressDialog>
#include <QPushButton>

#include <cstdio>
#include <unistd.h>

namespace tessaly::host {
namespace {

namespace archive = telephony::archive;

const QString kCaption = QStringLiteral("Messages");
const QString kFileFilter = QStringLiteral("Message archives (*.xml *.csv)");

QString resultText(const GSM::Result& result) {
    return QString::fromUtf16(result.getErrorMessage());
}

void printProgress(const char* verb, qint64 done, qint64 total) {
    if (total > 0)
        std::fprintf(stderr, "\r%s %3d %%", verb, int(done * 100 / total));
}

} // namespace

QString importSummary(const archive::ImportCounts& counts) {
    QString text = counts.imported == 1
                       ? QStringLiteral("Imported 1 message")
                       : QStringLiteral("Imported %1 messages").arg(counts.imported);
    if (counts.alreadyPresent > 0)
        text += counts.alreadyPresent == 1
                    ? QStringLiteral("; 1 was already here")
                    : QStringLiteral("; %1 were already here").arg(counts.alreadyPresent);
    if (counts.skipped > 0) {
        text += QStringLiteral("; %1 skipped").arg(counts.skipped);
        if (counts.skippedMms > 0)
            text += QStringLiteral(" (%1 MMS)").arg(counts.skippedMms);
    }
    return text + u'.';
}

int runArchiveCommand(const HostOptions& options) {
    if (!options.dataDirectory.isEmpty())
        tessaly::setDataDirectory(options.dataDirectory);
    if (const GSM::Result opened = telephony::open(); !opened.isOk()) {
        std::fprintf(stderr, "tessaly-phone: %s\n", qPrintable(resultText(opened)));
        return 1;
    }
    const bool terminal = isatty(STDERR_FILENO);
    int status = 0;
    if (!options.importFile.isEmpty()) {
        archive::MessageImport import(options.importFile);
        const bool read = import.read([terminal](qint64 done, qint64 total) {
            if (terminal)
                printProgress("reading", done, total);
        });
        if (terminal)
            std::fprintf(stderr, "\r");
        const GSM::Result committed = read ? import.commit([terminal](qint64 done, qint64 total) {
            if (terminal)
                printProgress("adding", done, total);
        })
                                           : GSM::Result(GSM::ErrorInvalidArgument, u"");
        if (!read) {
            std::fprintf(stderr, "tessaly-phone: nothing imported: %s\n",
                         qPrintable(import.error()));
            status = 1;
        } else if (!committed.isOk()) {
            std::fprintf(stderr, "tessaly-phone: nothing imported: %s\n",
                         qPrintable(resultText(committed)));
            status = 1;
        } else {
            std::printf("%s\n", qPrintable(importSummary(import.counts())));
        }
    } else {
        qint64 exported = 0;
        const GSM::Result result =
            archive::exportMessages(archive::storeDatabasePath(), options.exportFile, &exported,
                                    [terminal](qint64 done, qint64 total) {
                                        if (terminal)
                                            printProgress("writing", done, total);
                                    });
        if (terminal)
            std::fprintf(stderr, "\r");
        if (!result.isOk()) {
            std::fprintf(stderr, "tessaly-phone: nothing exported: %s\n",
                         qPrintable(resultText(result)));
            status = 1;
        } else {
            std::printf("Exported %lld messages to %s.\n", static_cast<long long>(exported),
                        qPrintable(options.exportFile));
        }
    }
    telephony::close();
    return status;
}

ArchiveMenu::ArchiveMenu(QWidget* homeScreen)
    : QObject(homeScreen)
    , home_(homeScreen)
    , button_(new QPushButton(QStringLiteral("Menu"), homeScreen)) {
    button_->setObjectName(QStringLiteral("homeMenuButton"));
    button_->setFlat(true);
    // A soft key of the phone: its text in the screen's own colour.
    QPalette colours = button_->palette();
    colours.setColor(QPalette::ButtonText, homeScreen->palette().color(QPalette::WindowText));
    button_->setPalette(colours);
    if (QLayout* layout = homeScreen->layout())
        layout->addWidget(button_);
    connect(button_, &QPushButton::clicked, this, &ArchiveMenu::openMenu);
}

ArchiveMenu::~ArchiveMenu() {
    cancel_ = true;
    if (worker_.joinable())
        worker_.join();
}

void ArchiveMenu::openMenu() {
    MenuItem menu;
    menu.isPopup = true;
    MenuItem importItem;
    importItem.id = ImportMessages;
    importItem.text = QStringLiteral("Import messages…");
    importItem.enabled = !busy();
    MenuItem exportItem = importItem;
    exportItem.id = ExportMessages;
    exportItem.text = QStringLiteral("Export messages…");
    menu.children = {importItem, exportItem};
    const QPoint below = button_->mapToGlobal(QPoint(0, 0));
    const int chosen =
        UserAgent::current().trackPopupMenuEx(home_, menu, below, TPM_LEFTALIGN | TPM_BOTTOMALIGN);
    if (chosen == 0)
        return;
    const bool importing = chosen == ImportMessages;
    const QString file = UserAgent::current().chooseFile(
        home_, importing ? QStringLiteral("Import messages") : QStringLiteral("Export messages"),
        importing ? FileChoice::Open : FileChoice::Save, kFileFilter);
    if (file.isEmpty())
        return;
    if (importing)
        runImport(file);
    else
        runExport(file);
}

void ArchiveMenu::startProgress(const QString& label) {
    cancel_ = false;
    progress_ = new QProgressDialog(label, QStringLiteral("Cancel"), 0, 1000, home_);
    progress_->setWindowTitle(kCaption);
    progress_->setMinimumDuration(0);
    progress_->setAutoClose(false);
    progress_->setAutoReset(false);
    connect(progress_, &QProgressDialog::canceled, this, [this] { cancel_ = true; });
    progress_->open();
}

void ArchiveMenu::reportProgress(qint64 done, qint64 total) {
    if (progress_ && total > 0)
        progress_->setValue(int(done * 1000 / total));
}

void ArchiveMenu::end(bool ok, const QString& message) {
    if (worker_.joinable())
        worker_.join();
    if (progress_)
        progress_->deleteLater();
    UserAgent::current().messageBox(home_, message, kCaption,
                                    ok ? MB_OK | MB_ICONINFORMATION : MB_OK | MB_ICONWARNING);
    emit finished(ok, message);
}

void ArchiveMenu::runImport(const QString& file) {
    if (busy())
        return;
    startProgress(QStringLiteral("Reading %1…").arg(file));
    auto import = std::make_shared<archive::MessageImport>(file);
    worker_ = std::thread([this, import] {
        const bool read = import->read(
            [this](qint64 done, qint64 total) {
                QMetaObject::invokeMethod(this,
                                          [this, done, total] { reportProgress(done, total); });
            },
            &cancel_);
        // The store is the UI thread's: the staged messages go in there, in one transaction.
        QMetaObject::invokeMethod(this, [this, import, read] {
            if (!read)
                return end(false, QStringLiteral("Nothing was imported.\n%1").arg(import->error()));
            if (progress_)
                progress_->setLabelText(QStringLiteral("Adding the messages…"));
            const GSM::Result committed =
                import->commit([this](qint64 done, qint64 total) { reportProgress(done, total); });
            if (!committed.isOk())
                return end(false,
                           QStringLiteral("Nothing was imported.\n%1").arg(resultText(committed)));
            end(true, importSummary(import->counts()));
        });
    });
}

void ArchiveMenu::runExport(const QString& file) {
    if (busy())
        return;
    startProgress(QStringLiteral("Writing %1…").arg(file));
    const QString store = archive::storeDatabasePath();
    worker_ = std::thread([this, file, store] {
        qint64 exported = 0;
        const GSM::Result result = archive::exportMessages(
            store, file, &exported,
            [this](qint64 done, qint64 total) {
                QMetaObject::invokeMethod(this,
                                          [this, done, total] { reportProgress(done, total); });
            },
            &cancel_);
        QMetaObject::invokeMethod(this, [this, result, exported, file] {
            end(result.isOk(),
                result.isOk()
                    ? QStringLiteral("Exported %1 messages to %2.").arg(exported).arg(file)
                    : QStringLiteral("Nothing was exported.\n%1").arg(resultText(result)));
        });
    });
}

} // namespace tessaly::host
