#pragma once

// The person of a benchmark: answers the size warning of a folder over 1,000 messages at once,
// as a tap on OK, and nothing else is asked.

#include "framework/ui/useragent.h"

class AnsweringUser final : public tessaly::UserAgent {
public:
    int messageBox(QWidget*, const QString&, const QString&, UINT) override { return IDOK; }
    int trackPopupMenu(QWidget*, const tessaly::MenuItem&, QPoint) override { return 0; }
    int runModal(tessaly::Dialog&) override { return IDCANCEL; }
    tessaly::ContactPickerChoice
    pickContact(QWidget*, const QString&,
                const std::vector<tessaly::ContactPickerEntry>&) override {
        return {};
    }
};
