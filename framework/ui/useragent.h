#pragma once

// The person in front of the phone. Every message box, tracked popup menu, modal dialog run and
// contact-picker run goes through the installed UserAgent, so that tests can answer in place of
// a person. Production answers with Qt widgets.

#include "framework/resources/resource_model.h"
#include "framework/win32types.h"

#include <QPoint>
#include <QString>
#include <QStringList>

#include <vector>

class QDialog;
class QWidget;

// Message box buttons, icons and answers, with their platform values.
constexpr UINT MB_OK = 0x0;
constexpr UINT MB_OKCANCEL = 0x1;
constexpr UINT MB_YESNOCANCEL = 0x3;
constexpr UINT MB_YESNO = 0x4;
constexpr UINT MB_ICONHAND = 0x10;
constexpr UINT MB_ICONSTOP = MB_ICONHAND;
constexpr UINT MB_ICONERROR = MB_ICONHAND;
constexpr UINT MB_ICONQUESTION = 0x20;
constexpr UINT MB_ICONEXCLAMATION = 0x30;
constexpr UINT MB_ICONWARNING = MB_ICONEXCLAMATION;
constexpr UINT MB_ICONINFORMATION = 0x40;
constexpr UINT MB_ICONASTERISK = MB_ICONINFORMATION;
constexpr UINT MB_DEFBUTTON2 = 0x100;
constexpr UINT MB_SETFOREGROUND = 0x10000;
constexpr UINT MB_TOPMOST = 0x40000;

constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDYES = 6;
constexpr int IDNO = 7;

namespace tessaly {

class Dialog;

struct ContactPickerEntry {
    QString name;
    QStringList numbers;
};

// What a file chooser asks for: a file to read, or a name to write to.
enum class FileChoice { Open, Save };

struct ContactPickerChoice {
    int entry = -1;  // -1: the person cancelled
    int number = -1; // index into the entry's numbers
};

class UserAgent {
public:
    virtual ~UserAgent() = default;

    // Returns IDOK, IDCANCEL, IDYES or IDNO.
    virtual int messageBox(QWidget* owner, const QString& text, const QString& caption,
                           UINT flags) = 0;
    // Returns the chosen command id, or 0 when the menu was dismissed.
    virtual int trackPopupMenu(QWidget* owner, const MenuItem& popup, QPoint screenPos) = 0;
    // With the alignment flags (TPM_*) of the platform; agents that do not place menus
    // themselves need not override it.
    virtual int trackPopupMenuEx(QWidget* owner, const MenuItem& popup, QPoint screenPos,
                                 UINT flags) {
        return trackPopupMenu(owner, popup, screenPos);
    }
    // Ends the message box now shown over owner as if the button with that result had been
    // pressed (a window closing its own box after a timeout). False when none is shown.
    virtual bool endMessageBox(QWidget* owner, int result) { return false; }
    // Runs the dialog modally; returns its end code.
    virtual int runModal(Dialog& dialog) = 0;
    virtual ContactPickerChoice pickContact(QWidget* owner, const QString& title,
                                            const std::vector<ContactPickerEntry>& entries) = 0;
    // A file chooser; `filter` in Qt's form ("Messages (*.xml *.csv)"). Empty when the person
    // cancelled; agents that offer no files answer so.
    virtual QString chooseFile(QWidget* owner, const QString& caption, FileChoice kind,
                               const QString& filter) {
        return {};
    }

    // The agent in force; the Qt one unless a test installed another.
    static UserAgent& current();
    // Installs an agent (not owned); nullptr restores the Qt one.
    static void install(UserAgent* agent);
};

// Runs a Qt dialog modally over its owner's window only, as the platform's modal loops disable
// just their owner: other windows (other phone windows, the simulator panel beside the phone)
// still take clicks and keys. Returns the dialog's result.
int runOverOwner(QDialog& dialog);

} // namespace tessaly
