#include "host/host_options.h"

#include <QCommandLineParser>

namespace tessaly::host {

namespace {

struct Parser {
    QCommandLineParser parser;
    QCommandLineOption dataDir{QStringLiteral("data-dir"),
                               QStringLiteral("Keep the phone's data in <dir>."),
                               QStringLiteral("dir")};
    QCommandLineOption demo{QStringLiteral("demo"),
                            QStringLiteral("Fill an empty data directory with contacts, "
                                           "messages and cell broadcasts.")};
    QCommandLineOption screenshot{QStringLiteral("screenshot"),
                                  QStringLiteral("Save a picture of the phone to <file> once it "
                                                 "has started, then quit."),
                                  QStringLiteral("file")};
    QCommandLineOption openMessages{
        QStringLiteral("open-messages"),
        QStringLiteral("Press the Messages button once started (with --screenshot: a picture "
                       "of the SMS main window).")};
    QCommandLineOption modem{QStringLiteral("modem"),
                             QStringLiteral("The radio: auto (ModemManager when it reports a "
                                            "modem, else the simulator), simulator or "
                                            "modemmanager."),
                             QStringLiteral("kind"), QStringLiteral("auto")};
    QCommandLineOption importFile{
        QStringLiteral("import"),
        QStringLiteral("Import the messages of <file> (an SMS Backup & Restore .xml file, or "
                       ".csv) into the data directory, then quit."),
        QStringLiteral("file")};
    QCommandLineOption exportFile{
        QStringLiteral("export"),
        QStringLiteral("Export every message to <file> (.xml or .csv), then quit."),
        QStringLiteral("file")};
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")},
                            QStringLiteral("Show this help.")};

    Parser() {
        parser.setApplicationDescription(
            QStringLiteral("The Tessaly phone with its SMS module and a simulator panel.\n"
                           "Sms.tsm is loaded from beside the program unless TESSALY_MODULE "
                           "names another file."));
        parser.addOptions(
            {dataDir, demo, screenshot, openMessages, modem, importFile, exportFile, help});
        parser.addPositionalArgument(
            QStringLiteral("link"),
            QStringLiteral("An sms: link (sms:+4917012345?body=Hello): opens a new message to "
                           "that number with that text."),
            QStringLiteral("[sms:link]"));
    }
};

} // namespace

std::optional<HostOptions> parseHostArguments(const QStringList& arguments, QString* error) {
    Parser p;
    if (!p.parser.parse(arguments)) {
        if (error)
            *error = p.parser.errorText();
        return std::nullopt;
    }
    HostOptions options;
    const QStringList positional = p.parser.positionalArguments();
    if (positional.size() == 1 && looksLikeSmsLink(positional.constFirst())) {
        options.smsLink = parseSmsLink(positional.constFirst(), error);
        if (!options.smsLink)
            return std::nullopt;
    } else if (!positional.isEmpty()) {
        if (error)
            *error = QStringLiteral("Unexpected argument: %1").arg(positional.constFirst());
        return std::nullopt;
    }
    options.dataDirectory = p.parser.value(p.dataDir);
    options.demo = p.parser.isSet(p.demo);
    options.screenshotPath = p.parser.value(p.screenshot);
    options.openMessages = p.parser.isSet(p.openMessages);
    options.help = p.parser.isSet(p.help);
    options.importFile = p.parser.value(p.importFile);
    options.exportFile = p.parser.value(p.exportFile);
    if (!options.importFile.isEmpty() && !options.exportFile.isEmpty()) {
        if (error)
            *error = QStringLiteral("--import and --export are separate runs");
        return std::nullopt;
    }
    // A picture of the phone is of the phone, not of whatever modem is plugged in.
    const QString radio = p.parser.isSet(p.modem) || options.screenshotPath.isEmpty()
                              ? p.parser.value(p.modem)
                              : QStringLiteral("simulator");
    if (radio == QStringLiteral("simulator")) {
        options.radio = RadioKind::Simulator;
    } else if (radio == QStringLiteral("modemmanager")) {
        options.radio = RadioKind::ModemManager;
    } else if (radio != QStringLiteral("auto")) {
        if (error)
            *error =
                QStringLiteral("--modem is auto, simulator or modemmanager, not %1").arg(radio);
        return std::nullopt;
    }
    if (p.parser.isSet(p.dataDir) && options.dataDirectory.isEmpty()) {
        if (error)
            *error = QStringLiteral("--data-dir needs a directory");
        return std::nullopt;
    }
    return options;
}

QString hostUsage() {
    // Before the application object exists Qt cannot name the program.
    return Parser().parser.helpText().replace(QStringLiteral("<executable_name>"),
                                              QStringLiteral("tessaly-phone"));
}

} // namespace tessaly::host
