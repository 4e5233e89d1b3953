#include "framework/ui/useragent.h"

namespace tessaly {

namespace {

// Until the Qt agent is in place every question is answered as if dismissed.
class DismissingUserAgent final : public UserAgent {
public:
    int messageBox(QWidget*, const QString&, const QString&, UINT flags) override {
        return (flags & 0xf) == MB_OK ? IDOK : IDCANCEL;
    }
    int trackPopupMenu(QWidget*, const MenuItem&, QPoint) override { return 0; }
    int runModal(Dialog&) override { return IDCANCEL; }
    ContactPickerChoice pickContact(QWidget*, const QString&,
                                    const std::vector<ContactPickerEntry>&) override {
        return {};
    }
};

UserAgent* installedAgent = nullptr;

} // namespace

UserAgent& UserAgent::current() {
    static DismissingUserAgent fallback;
    return installedAgent ? *installedAgent : fallback;
}

void UserAgent::install(UserAgent* agent) {
    installedAgent = agent;
}

} // namespace tessaly
