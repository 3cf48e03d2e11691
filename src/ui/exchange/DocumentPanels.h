#pragma once

#include <QFileDialog>

#include <memory>

/// File panels for documents with shortcuts. They show folders and JSON files. Main thread only.
namespace hollowfernpike {

/// Proposes "Hollowfernpike.json", asks before a file is replaced and lets folders be made. Every
/// name gets the extension ".json" unless it has it.
std::unique_ptr<QFileDialog> makeSavePanel();

/// Takes one file that exists.
std::unique_ptr<QFileDialog> makeOpenPanel();

} // namespace hollowfernpike
