#pragma once
// Where an application finds its configuration and keeps its writable data,
// following the XDG base directory conventions, and where this project's
// read-only data lies wherever it was installed or unpacked.

#include <string>
#include <vector>

namespace ku::path {

// The path of the configuration file or directory `fileName` of the
// application `applicationName`, searched in this order:
//   1. $XDG_CONFIG_HOME/<application>/<file> (default ~/.config)
//   2. <dir>/<application>/<file> for each dir of $XDG_CONFIG_DIRS (default /etc/xdg)
//   3. <data>/config/<application>/<file> for each of dataFolderCandidates()
// Returns an empty string, and logs an error record (category "ku.path")
// naming every folder searched, when none exists.
std::string findConf(const std::string& applicationName, const std::string& fileName);

// The folders findConf searches, in order, each ending in "/".
std::vector<std::string> configSearchFolders();

// The project's read-only data folder (configuration, media, robots), without
// a trailing "/": the first of dataFolderCandidates() that exists. When none
// does, an error record names them all and the first is returned.
std::string dataFolder();

// Where the project's data may lie, in order, without trailing "/":
//   1. beside this library's own file: <libdir>/../share/render_widget, which
//      holds after `cmake --install`, after moving the installed tree, in an
//      unpacked package, and in the build tree (<build>/lib, <build>/share);
//   2. when the running program lies in this project's build folder, the
//      data staged there (for programs linked statically);
//   3. <datadir>/render_widget of the prefix the project was configured with.
std::vector<std::string> dataFolderCandidates();

// The real path of the file this library was loaded from (symbolic links
// resolved); empty when it cannot be told.
std::string libraryFile();

// The data folder that belongs with a library file lying at `libraryFilePath`
// (candidate 1 above); empty for an empty path.
std::string dataFolderBeside(const std::string& libraryFilePath);

// $XDG_DATA_HOME/<application>/<file> (default ~/.local/share), creating the
// application's folder. The file itself is not created.
std::string userWritableDataPath(const std::string& applicationName, const std::string& fileName);

}  // namespace ku::path
