#pragma once

// The service-centre directory (every entry with its number; new, edit, delete, factory
// refill; OK makes the tapped entry the preferred one) and the dialog that creates or changes
// one entry. Both work on the library's live list: every change takes effect at once, also
// when the directory is left without OK. Index 0, the SIM's own centre, is shown but neither
// edited nor deleted.

#include "framework/ui/dialog.h"
#include "util/edit_commands.h"

#include <memory>

class QObject;

namespace tessaly::sms {

class ServiceCentreDirectoryDialog final : public Dialog {
public:
    explicit ServiceCentreDirectoryDialog(Dialog* parent);
    ~ServiceCentreDirectoryDialog() override;

    // The list index last tapped (-1: none, or a tap below the entries).
    int chosenIndex() const { return chosen_; }

protected:
    bool onInitDialog() override;
    void onCommand(int id) override;
    void onOK() override;
    void onListClick(int id, int row, int column) override;
    void onListTapAndHold(int id, int row, QPoint screenPos) override;
    void onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void fillList();
    void tapped(int row);
    void editEntry(int index);
    // The SIM's entry: says so and returns true.
    bool refuseSimEntry(int index);

    int chosen_ = -1;
    std::unique_ptr<QObject> emptySpaceTaps_;
};

class ServiceCentreEditDialog final : public Dialog {
public:
    // index -1 creates an entry; otherwise the list index of the entry to change.
    ServiceCentreEditDialog(Dialog* parent, int index);

protected:
    bool onInitDialog() override;
    void onCommand(int id) override;
    void onOK() override;
    void onEditSetFocus(int id) override { editCommands_.focused(id); }

private:
    void deleteEntry();

    int index_;
    QString initialName_;
    QString initialNumber_;
    EditCommands editCommands_;
};

} // namespace tessaly::sms
