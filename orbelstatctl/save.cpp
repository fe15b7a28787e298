#include "orbelstatctl/commands.h"
#include "upm/upm_block.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <sstream>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

// Has a file, or the names in a directory, on its medium. Returns whether that succeeded.
static bool sync(const std::string &path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const bool isDone = descriptor >= 0 && fsync(descriptor) == 0;
    close(descriptor);
    return isDone;
}

static void writeFile(const std::string &path, std::string_view text) {
    std::ofstream file(path, std::ios::binary);
    file << text << std::flush;
    if (!file || !sync(path)) {
        throw Stop{failed, path + ": " + strerror(errno)};
    }
}

// KEY=VALUE lines: what was captured where and when.
static std::string aboutText(Source &source) {
    std::ostringstream text;
    const time_t now = std::time(nullptr);
    utsname system{};
    uname(&system);
    text << "capture=1\norbelstatctl=" << ORBELSTATCTL_VERSION
         << "\ntime=" << std::put_time(std::gmtime(&now), "%FT%TZ")
         << "\nhost=" << escaped(system.nodename) << "\nkernel=" << system.sysname << ' '
         << system.release << ' ' << system.machine << '\n';
    for (const Section section : allSections) {
        const std::string error = source.errorOf(section);
        text << "section-" << section.id << '='
             << (error.empty() ? std::to_string(section.size) : error) << '\n';
    }
    return text.str();
}

// Fills an empty directory that has a name of its own, and gives it its right name and mode.
static void fill(const std::string &path, const std::string &name, Source &source) {
    std::string policyNames;
    for (uint32_t policy = 0; policy < policyCount; ++policy) {
        policyNames += escaped(source.policyName(policy)) + '\n';
    }
    for (const Section section : allSections) {
        if (const uint8_t *bytes = source.bytesOf(section)) {
            writeFile(path + "/section-" + std::to_string(section.id),
                      {reinterpret_cast<const char *>(bytes), static_cast<size_t>(section.size)});
        }
    }
    writeFile(path + "/policy-names", policyNames);
    writeFile(path + "/about", aboutText(source));
    const mode_t mask = umask(0);
    umask(mask);
    if (!sync(path) || chmod(path.c_str(), 0777 & ~mask) != 0 ||
        rename(path.c_str(), name.c_str()) != 0) {
        throw Stop{failed, name + ": " + strerror(errno)};
    }
    sync(name + "/..");
}

int saveCapture(const std::string &directory) {
    const std::string name = directory.substr(0, directory.find_last_not_of('/') + 1);
    refuseIf(name.empty(), directory + ": no name for a new directory");
    if (std::filesystem::exists(name) &&
        !(std::filesystem::is_directory(name) && std::filesystem::is_empty(name))) {
        throw Stop{failed, directory + ": exists and is no empty directory"};
    }
    std::string path = name + ".XXXXXX";
    if (mkdtemp(path.data()) == nullptr) {
        throw Stop{failed, directory + ": " + strerror(errno)};
    }
    Source source;
    try {
        fill(path, name, source);
    } catch (...) {
        std::filesystem::remove_all(path);
        throw;
    }
    return source.hasFailed() ? failed : succeeded;
}
