#include "framework/datadir.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tessaly-phone"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("The Tessaly phone with its SMS module."));
    parser.addHelpOption();
    QCommandLineOption dataDir(QStringLiteral("data-dir"),
                               QStringLiteral("Keep the phone's data in <dir>."),
                               QStringLiteral("dir"));
    parser.addOption(dataDir);
    parser.process(app);
    if (parser.isSet(dataDir))
        tessaly::setDataDirectory(parser.value(dataDir));

    QWidget phone;
    phone.setWindowTitle(QStringLiteral("Tessaly"));
    phone.setFixedSize(240, 320);
    auto* layout = new QVBoxLayout(&phone);
    auto* title = new QLabel(QStringLiteral("Tessaly"), &phone);
    title->setAlignment(Qt::AlignCenter);
    layout->addWidget(title);
    layout->addStretch();
    auto* messages = new QPushButton(QStringLiteral("Messages"), &phone);
    layout->addWidget(messages);
    layout->addStretch();
    phone.show();
    return app.exec();
}
