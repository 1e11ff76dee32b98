#pragma once
// Selection tagging: one field set in every selected row, through the same
// steps a user takes in the tag panels (load the track, put the value in,
// press both write buttons).
#include <QString>
#include <functional>

#include "tagedit/tag_panels.h"

namespace sonorit {

enum class SelectionKind { Artist = 1, Album = 2, Year = 3, Genre = 4, VA = 5, Cover = 6 };

// What frmGenre returns: three digits of the genre index, then the genre's
// text; "Cancel" when the user cancelled.
using GenreAsk = std::function<QString()>;
QString Genre_Answer(int index, const QString& text);
// A frmGenre answer the panels can take: three digits naming an entry of the
// genre list.
bool Genre_Answer_Valid(const QString& answer);

// Exactly four characters, each a digit.
bool Year_Answer_Valid(const QString& answer);

// Loads the row's track into the panels, puts the value in, writes the v1.1
// and the v2.3 tag. False when the file was missing or a write failed (the
// user was told).
bool Tag_Selection_Row(PanelContext& p, int row, SelectionKind kind, const QString& value);
// Every selected row in order, with the progress bar moving between rows.
// Returns the number of rows that failed (each told at once); a cover that
// cannot be taken ends the run as one failure.
int Tag_Selection(PanelContext& p, SelectionKind kind, const QString& value);

// The menu commands: each asks for its value (an empty answer ends the
// command) and tags the selection, returning the rows that failed. Nothing
// happens without a selected row.
int mnu_Tag_sel_Artist(PanelContext& p);
int mnu_Tag_sel_Album(PanelContext& p);
int mnu_Tag_sel_Year(PanelContext& p);
int mnu_Tag_sel_Genre(PanelContext& p, const GenreAsk& askGenre);
int mnu_Tag_sel_VA_On(PanelContext& p);
int mnu_Tag_sel_VA_Off(PanelContext& p);
int mnu_Tag_sel_Cover(PanelContext& p);

}  // namespace sonorit
