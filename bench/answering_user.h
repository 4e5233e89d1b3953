#pragma once

// The person of a benchmark: answers every message box at once with the one answer it was given
// (OK by default, as a tap on the size warning of a folder over 1,000 messages); menus and
// dialogs are left without a choice.

#include "framework/ui/useragent.h"

class AnsweringUser final : public tessaly::UserAgent {
public:
    explicit AnsweringUser(int answer = IDOK)
        : answer_(answer) {}

    int messageBox(QWidget*, const QString&, const QString&, UINT) override { return answer_; }
    int trackPopupMenu(QWidget*, const tessaly::MenuItem&, QPoint) override { return 0; }
    int runModal(tessaly::Dialog&) override { return IDCANCEL; }
    tessaly::ContactPickerChoice
    pickContact(QWidget*, const QString&,
                const std::vector<tessaly::ContactPickerEntry>&) override {
        return {};
    }

private:
    int answer_;
};
