#pragma once
// The first audio frame of a file: found behind any v2.3 tag and any junk,
// described for the screen (Mpeg_Info) and for the time calculations
// (Mpeg_Frame). Positions are 1-based; 0 means none.
#include <QString>
#include <array>

#include "byte_source.h"

namespace sonorit {

struct TagState;

// Texts are finished display texts, several with a leading blank.
struct Mpeg_Info {
    bool Valid = false;
    QString Bitrate;    // "128 Kbit", " (VBR)" appended behind a Xing/Info header
    QString Channels;   // " Stereo", " Joint Stereo", " Dual Channel", " Mono"
    QString Copyright;  // " Yes" / " No"
    QString CRC;        // "Yes" / "No"
    QString Emphasis;   // " None", " 50/15 microsec", " invalid", " CCIT J.17"
    QString Frequency;  // "44100 Hz"
    QString Layer;      // "Layer 1" .. "Layer 3"
    QString Mpeg;       // "MPEG 1.0", "MPEG 2.0", "MPEG 2.5"
    QString Original;   // " Yes" / " No"
    QString Size;       // "<file length> bytes"
    qint32 File_Length = 0;
    bool VBR = false;  // an "Xing" or "Info" header stands in the first frame
    quint8 Xing_Flags = 0;
    quint32 Xing_Frames = 0;
};

struct Mpeg_Frame {
    bool Valid = false;
    int Version = 0;  // 1 = MPEG 1, 2 = MPEG 2, 3 = MPEG 2.5
    int Layer = 0;
    bool CRC = false;
    int Bitrate_Index = 0;
    qint32 Bitrate = 0;  // bits per second
    qint32 Sample_Rate = 0;
    int Samples_Per_Frame = 0;
    int Padding = 0;
    int Frame_Size = 0;
    bool Private = false;
    int Channel_Mode = 0;
    int Mode_Extension = 0;
    bool Copyright = false;
    bool Original = false;
    int Emphasis = 0;
};

// Bits per second by the header's version bits, layer bits and bitrate index;
// reserved versions and layers and the indexes 0 and 15 hold 0.
using BitrateTable = std::array<std::array<std::array<qint32, 16>, 4>, 4>;
const BitrateTable& Mpeg_Bitrate_Table();

// The header tests of the search: B2 names MPEG 2.5, 2.0 or 1.0 with a real
// layer; B3 has a usable bitrate and sampling frequency.
bool Frame_Second_Byte_Ok(int b2);
bool Frame_Third_Byte_Ok(int b3);

// Searches from the position; fills info; returns the first frame's position
// or 0 with info.Valid false.
qint64 Read_Mpeg_Info(ByteSource& src, Mpeg_Info& info, qint64 position);
qint64 Read_Mpeg_Info(const QString& path, Mpeg_Info& info, qint64 position);
// Searches from where the audio starts (behind a v2.3 tag, else 1).
qint64 Find_First_Frame(ByteSource& src, Mpeg_Info& info);

// Exactly the header at the position.
Mpeg_Frame Read_Mpeg_Frame(ByteSource& src, qint64 position);
Mpeg_Frame Read_Mpeg_Frame(const QString& path, qint64 position);

// Frames walked one by one from the first; stops at the first thing that is
// not a frame header.
// The count is kept with the source, so that asking again costs nothing.
qint64 Count_Mpeg_Frames(ByteSource& src);
qint64 Walk_Mpeg_Frames(ByteSource& src);
qint64 Count_Mpeg_Frames(const QString& path);

// Samples_Per_Frame / Sample_Rate of the first frame; 0 without one.
float Seconds_Per_Frame(ByteSource& src);
float Seconds_Per_Frame(const QString& path);

bool Is_Mpeg(ByteSource& src);
bool Is_Mpeg(const QString& path);
bool Is_Mpeg1_Layer3(ByteSource& src);
bool Is_Mpeg1_Layer3(const QString& path);

// The nine labels of the FrameMPEG panel, all blank when no frame is found.
struct MpegLabels {
    QString labSize;
    QString labLength;
    QString LabFramesCount;
    QString labBitRate;
    QString LabFrameSize;
    QString labLayer;
    QString labFreqChan;
    QString labChannels;
    QString LabTagSize;
};

// Reads Frames and Length of Tag2_Fields and the panel's Tag2_Text_Time, and
// fills Frames and Length when it had to compute them (a later tag write
// stores them).
MpegLabels Show_Mpeg_Info(TagState& state, ByteSource& src);
MpegLabels Show_Mpeg_Info(TagState& state, const QString& path);

}  // namespace sonorit
