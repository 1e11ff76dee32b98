#pragma once
// The tag engine's records of the track read last. One TagState lives in the
// program; callers fill or read it and must not hold values across another
// read. Tests make a fresh one.
#include <QString>
#include <QtGlobal>
#include <array>
#include <vector>

namespace sonorit {

// A text of exactly N characters: assignment cuts to N or pads with blanks.
// NUL characters that a foreign tagger left stay in the text.
template <int N>
class FixedText {
public:
    static constexpr int Width = N;
    FixedText() : text_(N, QLatin1Char(' ')) {}
    FixedText(const QString& text) { assign(text); }  // NOLINT: assignment from text is the point
    FixedText& operator=(const QString& text)
    {
        assign(text);
        return *this;
    }
    const QString& text() const { return text_; }
    operator const QString&() const { return text_; }
    // What the Tag1 panel shows: the text up to a first NUL, blanks included.
    QString shown() const
    {
        const qsizetype nul = text_.indexOf(QChar(0));
        return nul < 0 ? text_ : text_.left(nul);
    }

private:
    void assign(const QString& text) { text_ = text.left(N).leftJustified(N, QLatin1Char(' ')); }
    QString text_;
};

// The 128-byte ID3v1.1 tag, fields in file order.
struct Tag1Record {
    FixedText<30> Title;
    FixedText<30> Artist;
    FixedText<30> Album;
    FixedText<4> Year;
    FixedText<28> Comment;
    quint8 ZeroByte = 0;
    quint8 Track = 0;
    quint8 Genre = 0;
};

// The text fields the program takes from an ID3v2.3 tag. Tag2_Fields and
// Tag2_Quick_Fields are both of this shape; Time is only filled where the
// mode says so.
struct Tag2FieldSet {
    QString Artist;
    QString Album;
    QString Track;
    QString Year;
    QString Title;
    QString VA;
    QString Time;    // "MM:SS"
    QString Length;  // TLEN, milliseconds as text
    QString Genre;
    QString Cover_File;
    QString Cover_Original;
    QString Frames;  // TFRM, the number of audio frames as text
    QString Comment;
};

// The filename tagger's fields.
struct FtTag2Fields {
    QString Artist;
    QString Album;
    QString Title;
    QString Track;
    QString Year;
    QString VA;
    QString Genre;
    QString Comment;
    QString Comment_Read;      // the comment text as read from the file
    QString Comment_Language;  // its language as read
    QString Description;
    QString Length;
    QString Time;
    QString Frames;
    int FT_Cover_Choice = 0;  // 0 no cover, 1 the cover of the tag, 2 a chosen file
    std::array<QString, 3> FT_Cover_Paths;
};

// What a mode-0 read puts into the controls of the Tag2 panel. The window
// copies it into its widgets after the read, then shows "Cover.jpg" of the
// data folder through Load_Tag_Cover (present exactly when a cover was taken).
struct Tag2Panel {
    QString Tag2_Text_Artist;
    QString Tag2_Text_Album;
    QString Tag2_Text_Track;
    QString Tag2_Text_Year;
    QString Tag2_Text_Title;
    QString Tag2_Text_Genre;
    QString Tag2_Text_Time;
    QString Tag2_Text_Comment;
    int Tag2_Combo_VA = 0;
    int Tag2_Combo_Genre = 148;
    bool Tag2_Text_Genre_Enabled = false;
};

// Synced lyrics as the player uses them. The arrays count from 1 as the
// player indexes them: element 0 is unused and empty.
struct LyricState {
    std::vector<QString> Lyric_Text{QString()};
    std::vector<qint32> Lyric_Time{0};
    int Lyric_Count = 0;
    int Lyric_Longest = 0;
    std::vector<QString> Syllable_Text{QString()};
    std::vector<qint32> Syllable_Time{0};
    int Syllable_Count = 0;
    int Time_Stamp_Format = 0;
};

struct TagState {
    TagState() = default;
    explicit TagState(QString dataFolder) : Data_Folder(std::move(dataFolder)) {}

    // Where the covers of a read are extracted ("Cover.jpg", "QCover.jpg");
    // the program's data folder, ending in "/".
    QString Data_Folder;
    // The setting "Read ID3v2.4 and v2.2 tags": such tags are read as if
    // they were v2.3, and the next write stores them so. Off, they count as
    // no tag.
    bool Read_Other_Versions = false;
    // Off, a read only notes whether a cover is there (Cover_File) and
    // leaves the cover files alone.
    bool Covers_To_File = true;

    Tag1Record Tag1_Record;

    Tag2FieldSet Tag2_Fields;
    bool Tag2_Present = false;
    qint32 Tag2_Total_Size = 0;
    qint32 Tag2_Padding_Size = 0;
    qint32 Tag2_Padding_Position = 0;
    // The comment's parts as read; the panel writer keeps language and
    // description of an untouched comment.
    QString Comment_Language;
    QString Comment_Description;
    QString Comment_Text_Read;
    // Set by the panel when Cover_File differs from Cover_Original.
    bool Cover_Changed = false;

    Tag2FieldSet Tag2_Quick_Fields;
    FtTag2Fields FT_Tag2_Fields;
    Tag2Panel Tag2_Panel;
    LyricState Lyrics;

    QString coverPath() const { return Data_Folder + QStringLiteral("Cover.jpg"); }
    QString quickCoverPath() const { return Data_Folder + QStringLiteral("QCover.jpg"); }
};

// The comment that stands wherever a comment would be empty.
QString TagStamp();

}  // namespace sonorit
