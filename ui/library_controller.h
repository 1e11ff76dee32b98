#pragma once
// The Library menu's handlers: each calls the core with the window's library
// context and nothing more.
#include <functional>

#include "library/library_state.h"

namespace sonorit::ui {

class LibraryController {
public:
    // `quit` ends the program once the exit sequence's file work is done.
    LibraryController(LibraryContext context, std::function<void()> quit);

    void newLibrary();
    void open();
    void deleteLibrary();
    void addMp3();
    void scanFolder();
    void scanTree();
    void refresh();
    void sort();
    void renameTrack();
    void renameSelection();
    void renameAlbum();
    void renameAll();
    void relocateTrack();
    void relocateSelection();
    void relocateAlbum();
    void relocateAll();
    void move();
    void backup();
    void restore();
    void removeTrack();
    void removeSelection();
    void removeAlbum();
    void deleteTrack();
    void deleteSelection();
    void deleteAlbum();
    void copyTrack();
    void copySelection();
    void copyAlbum();
    void exit();
    void checkOpenLibraryFile(const QString& path);

private:
    void locked(void (*command)(LibraryContext&));
    // The window has told the user of any failure already.
    void locked(bool (*command)(LibraryContext&));
    LibraryContext c_;
    std::function<void()> quit_;
};

}  // namespace sonorit::ui
