#pragma once
// Which encoders this machine offers, for the parts of the program that
// convert and rip.
namespace sonorit {

// True when a Windows Media Audio encoder is installed (GStreamer's libav
// plugin set brings FFmpeg's).
bool Wma_Encoder_Available();

}  // namespace sonorit
