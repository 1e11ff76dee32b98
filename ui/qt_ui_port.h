#pragma once
// The core's user-interface port answered with Qt: message boxes, file and
// folder dialogs, the progress panel and the shielding of the main window.
#include <QElapsedTimer>

#include "shell/ui_port.h"

class QWidget;

namespace sonorit::ui {

class ProgressPanel;
class WindowShield;

// Message texts part lines by CR LF or LF CR, now and then by a lone CR or
// LF; a box shows plain line breaks.
QString Display_Text(const QString& text);
// The name filter of a file dialog: "description (pattern)", the pattern's
// ";" separators as blanks; a description that already ends in its pattern
// stays as it is.
QString Name_Filter(const QString& description, const QString& pattern);

class QtUiPort : public UiPort {
public:
    QtUiPort(QWidget* window, QWidget* list, WindowShield& shield, ProgressPanel& progress);

    Answer message(const QString& text, const QString& title, Buttons buttons, Icon icon) override;
    Answer question(const QString& text, const QString& title, Buttons buttons, Icon icon,
                    Answer defaultButton) override;
    QString fileDialog(const FileDialogRequest& request) override;
    QString browseForFolder() override;
    // "" when cancelled, as an empty input.
    QString input(const QString& prompt, const QString& title, const QString& defaultText) override;

    void lockMainWindow() override;
    void unlockMainWindow() override;
    void showProgress() override;
    void shieldLibrary() override;
    void unshieldLibrary() override;
    void hideProgress() override;
    void setLabel17(const QString& text) override;
    void setLabel18(const QString& text) override;
    void setProgressRange(int minimum, int maximum) override;
    void setProgressValue(int value) override;
    void setCaption(const QString& text) override;
    void focusLibraryList() override;
    void yield() override;

private:
    QWidget* dialogParent() const;
    QWidget* window_;
    QWidget* list_;
    WindowShield& shield_;
    ProgressPanel& progress_;
    QElapsedTimer sinceYield_;
};

}  // namespace sonorit::ui
