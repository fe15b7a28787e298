#include "orbelstatctl/commands.h"
#include "orbelstatctl/signals.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

using Files = std::map<std::string, std::string>; // contents by name

// Returns the text of the file "about": KEY=VALUE lines with what was captured where and when.
static std::string captureInfo(Source &source) {
    char date[32];
    const time_t now = time(nullptr);
    tm utc{};
    strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%SZ", gmtime_r(&now, &utc));
    utsname system{};
    uname(&system);
    std::string text = std::string("capture=1\norbelstatctl=" ORBELSTATCTL_VERSION "\ntime=") +
                       date + "\nhost=" + escaped(system.nodename) + "\nkernel=" + system.sysname +
                       ' ' + system.release + ' ' + system.machine + '\n';
    for (const Section section : allSections) {
        const std::string error = source.errorOf(section);
        text += "section-" + std::to_string(section.id) + '=' +
                (error.empty() ? std::to_string(section.size) : error) + '\n';
    }
    return text;
}

// Reads everything that a capture holds. A section that cannot be read has no file.
static Files readFiles(Source &source) {
    Files files;
    for (const Section section : allSections) {
        if (const auto bytes = source.readBytes(section)) {
            files["section-" + std::to_string(section.id)] = *bytes;
        }
    }
    for (const Field &name : expandPaths(parsePaths({"upm.policies.name"}, Kind::any))) {
        files["policy-names"] += source.readValue(name).value_or("") + '\n';
    }
    files["about"] = captureInfo(source);
    return files;
}

// Writes a new, read-only file and flushes it to disk. Returns 0 or an errno value.
static int writeFile(int directory, const std::string &name, std::string_view bytes) {
    const int descriptor =
        openat(directory, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0444);
    if (descriptor < 0) {
        return errno;
    }
    int error = 0;
    while (error == 0 && !bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        error = count < 0 && errno != EINTR ? errno : 0;
        bytes.remove_prefix(static_cast<size_t>(std::max<ssize_t>(count, 0)));
    }
    error = error == 0 && fsync(descriptor) != 0 ? errno : error;
    return close(descriptor) != 0 && error == 0 ? errno : error;
}

// Gives the complete directory the default mode of a new one, keeping any set-group-ID bit. Then
// renames it to `name`. Returns 0 or an errno value.
static int finishDirectory(int directory, const std::string &temporary, const std::string &name) {
    const mode_t mask = umask(0);
    umask(mask);
    struct stat status {};
    if (fstat(directory, &status) != 0 ||
        fchmod(directory, (status.st_mode & S_ISGID) | (0777 & ~mask)) != 0 ||
        fsync(directory) != 0 || rename(temporary.c_str(), name.c_str()) != 0) {
        return errno;
    }
    const int parent = open((name + "/..").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (parent >= 0) {
        fsync(parent);
        close(parent);
    }
    return 0;
}

// Creates the capture `name`: complete, or not at all. Throws a failure.
static void createCapture(const std::string &name, const Files &files) {
    std::string temporary = name + ".XXXXXX";
    if (mkdtemp(temporary.data()) == nullptr) {
        fail(name + ": " + strerror(errno));
    }
    // Files are created relative to this descriptor, so that no other user can redirect them.
    const int directory = open(temporary.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    int error = directory < 0 ? errno : 0;
    std::string path = name;
    for (auto file = files.begin(); error == 0 && file != files.end(); ++file) {
        error = writeFile(directory, file->first, file->second);
        path = error == 0 ? name : name + '/' + file->first;
    }
    error = error == 0 ? finishDirectory(directory, temporary, name) : error;
    if (error != 0) {
        for (const auto &[file, bytes] : files) {
            unlinkat(directory, file.c_str(), 0);
        }
        rmdir(temporary.c_str());
    }
    close(directory);
    if (error != 0) {
        const bool isInUse = error == ENOTEMPTY || error == EEXIST;
        fail(path + ": " + (isInUse ? "already exists and is not empty" : strerror(error)));
    }
}

ExitStatus runSave(const Options &arguments) {
    const std::string &text = arguments.operands[0];
    rejectIf(text.empty(), "the name of DIRECTORY is empty");
    Source source;
    const Files files = readFiles(source);
    // A signal in between would leave the temporary directory behind.
    sigset_t signals = interrupts();
    sigaddset(&signals, SIGHUP);
    const BlockedSignals blocked(signals);
    signal(SIGXFSZ, SIG_IGN); // so that the write of a file that is too large fails
    createCapture(text.substr(0, std::max<size_t>(text.find_last_not_of('/') + 1, 1)), files);
    return source.hasFailed() ? ExitStatus::failure : ExitStatus::success;
}

const char saveHelp[] = R"(Usage: orbelstatctl save DIRECTORY

Save all sections and the policies' names as a capture. DIRECTORY is created, or
must be empty. The files are read-only, so that nothing changes by accident.

Examples:
  orbelstatctl save monday
  orbelstatctl save today && tar cz today >today.tar.gz
)";
