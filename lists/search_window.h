#pragma once

// Find: a field to type into and, under it, the messages of both folders that match, newest
// first: the other party, the date, and the text around the first match with the match in
// bold. Every keystroke searches again; the list reads one page at a time as it is scrolled.
// Enter or a tap opens the message. Run modally from the main window's Tools menu.

#include "framework/ui/dialog.h"
#include "gsm/search.h"

#include <functional>
#include <memory>

namespace tessaly::sms {

class SearchWindow : public Dialog {
public:
    // Opens a found message (its id and folder) in the message view.
    using OpenMessage = std::function<void(long messageId, int folder)>;
    static constexpr int kPageSize = 20;

    SearchWindow(OpenMessage openMessage, Dialog* parent = nullptr);
    ~SearchWindow() override;

    int foundCount() const { return found_; }
    int rowsShown() const;
    long messageAt(int row) const;

protected:
    bool onInitDialog() override;
    void onEditChange(int id) override;
    void onListClick(int id, int row, int column) override;
    void onListKeyDown(int id, int virtualKey) override;
    void onOK() override;

private:
    void searchFor(const QString& text);
    void showNextPage();
    void openRow(int row);

    OpenMessage openMessage_;
    std::unique_ptr<GSM::MessageSearch> search_;
    int found_ = 0;
};

} // namespace tessaly::sms
