#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tools/feed/generator.h"

namespace hcr {

// Recorded feeds: one datagram a line, either as it came, or with the receive time in Unix seconds and a tab in front.
// A line that begins with "{" is a weather object. Files ending in ".gz" are compressed.

/// True for a line that belongs on the weather port.
bool isWeatherLine(std::string_view line);
/// The datagrams of a recording in the order and at the times in which they are to be sent. Lines without a receive
/// time are ordered by their own timestamps, since they come in any order, and long gaps between those are closed.
std::vector<TimedLine> parseRecording(std::string_view text);
/// The text of a recording, with receive times.
std::string recordingText(const std::vector<TimedLine>& lines);
/// One line of a recording; line ends inside of the datagram become blanks.
std::string recordingLine(const TimedLine& line);

/// The whole file, decompressed if it is compressed. Throws std::runtime_error with a text for the user.
std::string readRecordingFile(const std::filesystem::path& path);
/// Replaces the file as a whole, compressed if its name says so. Throws like readRecordingFile.
void writeRecordingFile(const std::filesystem::path& path, std::string_view text);

}  // namespace hcr
