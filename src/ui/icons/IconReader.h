#pragma once

#include <QImage>
#include <QSize>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace hollowfernpike {

/// Looks into the files in turn until one holds an icon, and calls `onRead` with its image, which
/// is null if none does. Threads of lower priority do the reading, four at a time, because a file
/// may lie on a disk that does not answer, and because drawing may take long. The latest request
/// comes first. `onRead` is called later, on the main thread. Main thread only.
void readIcon(std::vector<std::string> files, const QSize& size,
              std::function<void(const QImage&)> onRead);

/// Whether an answer is still to come. Main thread only.
bool isReadingIcons();

/// Calls nobody any more, and waits for the threads, but no longer than `longest`. Whether they
/// have ended: what they use must not be destroyed before. Main thread only.
bool stopReadingIcons(std::chrono::milliseconds longest);

} // namespace hollowfernpike
