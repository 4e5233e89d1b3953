#pragma once

// A window that writes every handler call into a log, for tests of the event routing.

#include "framework/ui/dialog.h"

#include <functional>
#include <string>
#include <vector>

namespace tessaly::testdata {

class RecordingDialog : public Dialog {
public:
    using Dialog::Dialog;

    std::vector<std::string> log;
    // Runs for each command before the default handling; return true to stop it.
    std::function<bool(RecordingDialog&, int)> commandHook;
    std::function<void(RecordingDialog&, UINT)> messageHook;
    std::function<void(RecordingDialog&, UINT_PTR)> timerHook;
    std::function<void(RecordingDialog&, int)> editChangeHook;
    std::function<void()> postDestroyHook;

    // Log lines that start with prefix.
    std::vector<std::string> entries(const std::string& prefix) const {
        std::vector<std::string> found;
        for (const std::string& line : log)
            if (line.rfind(prefix, 0) == 0)
                found.push_back(line);
        return found;
    }

protected:
    bool onInitDialog() override {
        write("init");
        return true;
    }
    void onCommand(int id) override {
        write("command %d", id);
        if (commandHook && commandHook(*this, id))
            return;
        Dialog::onCommand(id);
    }
    void onTimer(UINT_PTR id) override {
        write("timer %d", int(id));
        if (timerHook)
            timerHook(*this, id);
    }
    void onMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        write("message %#x %d %d", message, int(wParam), int(lParam));
        if (messageHook)
            messageHook(*this, message);
    }
    void onEditChange(int id) override {
        write("editchange %d", id);
        if (editChangeHook)
            editChangeHook(*this, id);
    }
    void onEditUpdate(int id) override { write("editupdate %d", id); }
    void onEditSetFocus(int id) override { write("setfocus %d", id); }
    void onEditKillFocus(int id) override { write("killfocus %d", id); }
    void onListClick(int id, int row, int column) override {
        write("listclick %d %d %d", id, row, column);
    }
    void onListColumnClick(int id, int column) override { write("columnclick %d %d", id, column); }
    void onListKeyDown(int id, int key) override { write("keydown %d %d", id, key); }
    void onListTapAndHold(int id, int row, QPoint) override { write("taphold %d %d", id, row); }
    void onListColumnWidthChanged(int id, int column, int width) override {
        write("columnwidth %d %d %d", id, column, width);
    }
    void onComboDropDown(int id) override { write("dropdown %d", id); }
    void onComboCloseUp(int id) override { write("closeup %d", id); }
    void onComboSelChange(int id) override { write("comboselchange %d", id); }
    void onListBoxSelChange(int id) override { write("listboxselchange %d", id); }
    void onUpDownChange(int id, int pos) override { write("updown %d %d", id, pos); }
    void onDateTimeChange(int id) override { write("datetime %d", id); }
    void onActivate(bool active) override { write(active ? "activate" : "deactivate"); }
    void onSize(int width, int height) override { write("size %d %d", width, height); }
    void onSettingChange(UINT flag) override { write("settingchange %u", flag); }
    void onDestroy() override { write("destroy"); }
    void onPostDestroy() override {
        write("postdestroy");
        if (postDestroyHook)
            postDestroyHook();
    }

private:
    template <typename... Args> void write(const char* format, Args... args) {
        log.push_back(QString::asprintf(format, args...).toStdString());
    }
};

} // namespace tessaly::testdata
