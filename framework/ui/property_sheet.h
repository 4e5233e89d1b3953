#pragma once

// Property sheets: a full-screen window with tabs at the bottom, one page per tab. A page is a
// Dialog built from its own (child) template the first time it is shown; it hears when it
// becomes active, when it is left (and may refuse), and the sheet's OK or Cancel.

#include "framework/ui/dialog.h"

#include <QString>

#include <vector>

class QTabWidget;

// Property-sheet callback messages.
constexpr UINT PSCB_INITIALIZED = 1;
constexpr UINT PSCB_GETTITLE = 4;

namespace tessaly {

class PropertySheet;

class PropertyPage : public Dialog {
public:
    explicit PropertyPage(int templateId);
    explicit PropertyPage(const DialogTemplate& pageTemplate);

    PropertySheet* sheet() const { return sheet_; }
    // The tab text: the template's caption.
    QString tabText() const { return dialogTemplate().caption; }

    // Called by the sheet.
    virtual bool onSetActive() { return true; }
    // Return false to keep the page (the person stays on it).
    virtual bool onKillActive() { return true; }
    // The sheet closes with OK (each page that was created) or Cancel.
    void onOK() override {}
    void onCancel() override {}

private:
    friend class PropertySheet;
    PropertySheet* sheet_ = nullptr;
};

class PropertySheet : public Dialog {
public:
    explicit PropertySheet(const QString& caption, Dialog* parent = nullptr);
    ~PropertySheet() override;

    // Pages are not owned; add them before the sheet is created.
    void addPage(PropertyPage* page);
    int pageCount() const { return int(pages_.size()); }
    PropertyPage* page(int index) const;
    int activeIndex() const { return active_; }
    PropertyPage* activePage() const { return page(active_); }
    // Leaves the active page (which may refuse) and activates another; false if refused.
    bool setActivePage(int index);
    QString caption() const { return caption_; }

protected:
    bool onInitDialog() override;
    void onCommand(int id) override;
    void onDestroy() override;
    // The shell's questions during creation: PSCB_INITIALIZED, then PSCB_GETTITLE with the
    // caption in title (the answer becomes the title shown on top).
    virtual void onSheetCallback(UINT message, QString& title) {}

private:
    static DialogTemplate sheetTemplate(const QString& caption);
    bool ensurePageCreated(int index);
    // The page's onKillActive; false when it refuses to be left.
    bool leavePage(PropertyPage& page);

    QString caption_;
    std::vector<PropertyPage*> pages_;
    QTabWidget* tabs_ = nullptr;
    int active_ = -1;
    bool switching_ = false;
};

} // namespace tessaly
