#pragma once
// The tag panels of the main window: the widgets show the core's TagPanels
// and tell it what the user typed, picked and pressed. Keys follow the
// panels' rules: Enter moves on in a fixed order, a box selects its text on
// focus, Track and Year take digits only, every box keeps its limit.
#include <QObject>
#include <vector>

#include "tag_panels_build.h"
#include "tagedit/tag_panels.h"

class QPushButton;
class QTreeView;

namespace sonorit::ui {

class TagPanelsView : public QObject {
public:
    TagPanelsView(TagEditContext& edit, const TagPanelWidgets& widgets, QTreeView* library, QTreeView* playList);

    // The panels as the core sees them; a routine that changes the state
    // calls context().show() and the widgets follow.
    PanelContext& context() { return context_; }
    TagPanels& panels() { return panels_; }
    const TagPanelWidgets& widgets() const { return w_; }
    // The album tagger's openers in FrameTag2, bound by their own window.
    QPushButton* albumTagButton() const { return w_.albumTag; }
    QPushButton* superTagButton() const { return w_.superTag; }

    // Both write buttons stay enabled while a library is open.
    void setLibraryOpen(bool open);
    // The state into the widgets.
    void show();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void connectBoxes();
    void connectButtons();
    void connectLists();
    void edited(QLineEdit* edit, PanelBox box, const QString& text);
    void keyPressedIn(QTreeView* list);
    void moveFocus(PanelFocus where);
    void showCover();
    // Where Enter in `from` goes; null where Enter does nothing special.
    QWidget* nextAfter(QObject* from) const;
    bool boxOf(QObject* widget, PanelBox& box) const;

    TagPanels panels_;
    PanelContext context_;
    TagPanelWidgets w_;
    QTreeView* library_;
    QTreeView* playList_;
    std::vector<std::pair<QLineEdit*, PanelBox>> boxes_;
};

}  // namespace sonorit::ui
