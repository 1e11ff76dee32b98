#pragma once
// The three ID3v2.3 writers. None edits a tag in place: each builds a whole
// new file (the program's own frames, then the old frames the tag options
// keep, then the audio from the first frame on) and leaves the swap to the
// caller (tag_swap.h). They differ only in where their fields come from.
#include <QString>
#include <array>

#include "byte_source.h"
#include "tag_state.h"

class QIODevice;

namespace sonorit {

// The check boxes of the "ID3 Tag v2.3 Options" tab, kept in the settings as
// TAG_00 to TAG_13.
using TagOptions = std::array<bool, 14>;
namespace TagOption {
enum : int {
    Artist = 0,          // always on
    Title = 1,           // always on
    Album = 2,           // always on
    Tracknumber = 3,
    Year = 4,
    Genre = 5,           // always on
    VariousArtists = 6,  // TPE2
    Comment = 7,
    CoverPicture = 8,    // write a new APIC; keep the old front cover
    AudioFrames = 9,     // TFRM
    Time = 10,           // TLEN
    DiscardOtherPictures = 11,
    DiscardUnlisted = 12,
    SyncedLyrics = 13,   // keep SYLT (filename tagger only)
};
}

enum class Tag2Writer {
    Panel,     // Tag2_Fields: Tag2 panel, album tagger, selection tagging
    Filename,  // FT_Tag2_Fields: filename tagger
    Quick,     // Tag2_Quick_Fields: retag
};

// Reads the old file at `source`, deletes any `target` and builds the new file
// there. False when the source has no audio frame or is read-only (the
// target is not touched), when the old tag holds a foreign "T"/"W" frame name with a
// lower-case letter, or on any read or write error (the begun target is
// removed). The fields stay as they are, except that a changed comment's
// language becomes "eng".
bool Write_Tag2(Tag2Writer writer, TagState& state, const TagOptions& options, const QString& source,
                const QString& target);

// The same between a byte source and an open, seekable device.
bool Write_Tag2(Tag2Writer writer, TagState& state, const TagOptions& options, ByteSource& source,
                QIODevice& target);

inline bool Write_Tag2_Panel(TagState& state, const TagOptions& options, const QString& source, const QString& target)
{
    return Write_Tag2(Tag2Writer::Panel, state, options, source, target);
}
inline bool Write_Tag2_Filename(TagState& state, const TagOptions& options, const QString& source,
                                const QString& target)
{
    return Write_Tag2(Tag2Writer::Filename, state, options, source, target);
}
inline bool Write_Tag2_Quick(TagState& state, const TagOptions& options, const QString& source, const QString& target)
{
    return Write_Tag2(Tag2Writer::Quick, state, options, source, target);
}

}  // namespace sonorit
