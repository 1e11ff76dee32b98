#pragma once
// FilenameTag, the filename tagger's window: the name's word runs in three
// combos, the other tag boxes, the cover and the write options. The rules are
// the core's (tagedit/filename_tagger.h); the window shows its state and
// passes the user's actions on.
#include <QWidget>
#include <array>

#include "tagedit/filename_tagger.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace sonorit::ui {

class ClickLabel;
class MenuBar;

class FilenameTag : public QWidget {
    Q_OBJECT
public:
    FilenameTag(TagEditContext& c, QWidget* parent);

    // Shows the window on the selected library row (if any) and makes the
    // main window's selections follow into it.
    void open();
    FilenameTagger& tagger() { return tagger_; }

    // The text FilenameText shows before a track is loaded.
    static const QString& Empty_Text();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void build();
    // The controls into the core's form, and back.
    void pull();
    void push();
    void showCover();
    void applyFocus();
    void write();
    void step(int by);

    TagEditContext& c_;
    FilenameTagger tagger_;
    QPlainTextEdit* filenameText_ = nullptr;
    std::array<QComboBox*, 3> runs_{};  // artist, album, title
    QLineEdit* track_ = nullptr;
    QLineEdit* year_ = nullptr;
    QCheckBox* va_ = nullptr;
    QComboBox* genre_ = nullptr;
    QLineEdit* genreText_ = nullptr;
    QLineEdit* comment_ = nullptr;
    ClickLabel* cover_ = nullptr;
    QPushButton* coverButton_ = nullptr;
    QButtonGroup* option_ = nullptr;
    QCheckBox* autoselect_ = nullptr;
    QLabel* progress_ = nullptr;
};

// Extra > Filename Tagger opens the window, made on first use.
void Bind_Filename_Tagger(MenuBar& menus, TagEditContext& c, QWidget* mainWindow);

}  // namespace sonorit::ui
