#include "linux/PackageSafety.h"

#include <dirent.h>
#include <limits.h>
#include <sys/statvfs.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

namespace brightsweep {

namespace {

struct KeptFile {
    const char *path;
    const char *reason;
};

constexpr char startsSystem[] = "starts the system";
constexpr char managesPackages[] = "installs and removes programs";
constexpr char asksForPasswords[] = "asks for the administrator's password";
constexpr char isSession[] = "is part of the desktop that is running";
constexpr char isKernel[] = "is the kernel that is running";

// Whatever package has one of these. What a distribution lacks is passed over.
constexpr std::array keptFiles = {
    KeptFile{"/sbin/init", startsSystem},
    KeptFile{"/usr/lib/systemd/systemd", startsSystem},
    KeptFile{"/usr/bin/dpkg", managesPackages},
    KeptFile{"/usr/bin/apt-get", managesPackages},
    KeptFile{"/usr/bin/rpm", managesPackages},
    KeptFile{"/usr/bin/dnf", managesPackages},
    KeptFile{"/usr/bin/dnf-3", managesPackages},
    KeptFile{"/usr/bin/dnf5", managesPackages},
    KeptFile{"/usr/bin/yum", managesPackages},
    KeptFile{"/usr/bin/zypper", managesPackages},
    KeptFile{"/usr/bin/pacman", managesPackages},
    KeptFile{"/usr/bin/pkexec", asksForPasswords},
    KeptFile{"/usr/bin/sudo", asksForPasswords},
    KeptFile{"/usr/lib/polkit-1/polkitd", asksForPasswords},
    KeptFile{"/usr/libexec/polkitd", asksForPasswords},
    KeptFile{"/usr/lib/policykit-1/polkitd", asksForPasswords},
    KeptFile{"/usr/bin/dbus-daemon", isSession},
    KeptFile{"/usr/bin/dbus-broker", isSession},
};

// Display managers, X servers, sessions, compositors and agents of polkit: taking one away while it
// runs ends the session or locks people out.
constexpr std::array<std::string_view, 42> sessionPrograms = {"Hyprland",
                                                              "Xorg",
                                                              "Xwayland",
                                                              "budgie-wm",
                                                              "cinnamon",
                                                              "cinnamon-session-binary",
                                                              "cosmic-comp",
                                                              "cosmic-session",
                                                              "gdm",
                                                              "gdm3",
                                                              "gnome-session-binary",
                                                              "gnome-shell",
                                                              "greetd",
                                                              "i3",
                                                              "kwin_wayland",
                                                              "kwin_x11",
                                                              "labwc",
                                                              "lightdm",
                                                              "lxdm",
                                                              "lxpolkit",
                                                              "lxqt-policykit-agent",
                                                              "lxqt-session",
                                                              "lxsession",
                                                              "marco",
                                                              "mate-session",
                                                              "metacity",
                                                              "muffin",
                                                              "openbox",
                                                              "pantheon-session",
                                                              "plasma_session",
                                                              "plasmashell",
                                                              "polkit-gnome-authentication-agent-1",
                                                              "polkit-kde-authentication-agent-1",
                                                              "polkitd",
                                                              "river",
                                                              "sddm",
                                                              "startplasma-wayland",
                                                              "sway",
                                                              "weston",
                                                              "xfce4-session",
                                                              "xfdesktop",
                                                              "xfwm4"};
static_assert(std::is_sorted(sessionPrograms.begin(), sessionPrograms.end()));

std::string linkTarget(const std::string &link) {
    char target[PATH_MAX];
    const ssize_t size = ::readlink(link.c_str(), target, sizeof target);
    return size > 0 && size < ssize_t(sizeof target) ? std::string(target, std::size_t(size))
                                                     : std::string();
}

void addSession(std::unordered_map<std::string, std::string> &reasons) {
    struct Close {
        void operator()(DIR *stream) const { ::closedir(stream); }
    };
    const std::unique_ptr<DIR, Close> processes(::opendir("/proc"));
    while (const dirent *entry = processes ? ::readdir(processes.get()) : nullptr) {
        if (!std::isdigit(static_cast<unsigned char>(entry->d_name[0])))
            continue;
        std::string program = linkTarget("/proc/" + std::string(entry->d_name) + "/exe");
        if (isSessionProgram(std::string_view(program).substr(program.rfind('/') + 1)))
            reasons.emplace(std::move(program), isSession);
    }
    if (std::string service = linkTarget("/etc/systemd/system/display-manager.service");
        service.starts_with('/'))
        reasons.emplace(std::move(service), isSession);
}

void addKernel(std::unordered_map<std::string, std::string> &reasons) {
    utsname kernel;
    if (::uname(&kernel) != 0)
        return;
    const std::string release = kernel.release;
    reasons.emplace("/boot/vmlinuz-" + release, isKernel);
    for (const char *file : {"/vmlinuz", "/kernel", "/modules.builtin"})
        reasons.emplace("/usr/lib/modules/" + release + file, isKernel);
}

std::string systemsRefusal(const std::string &root) {
    if (::access((root + "/run/ostree-booted").c_str(), F_OK) == 0)
        return "The programs of this system come as one image.";
    struct statvfs status;
    if (::statvfs((root + "/usr").c_str(), &status) == 0 && (status.f_flag & ST_RDONLY) != 0)
        return "The folder of the system's programs cannot be written to.";
    return {};
}

} // namespace

bool isSessionProgram(std::string_view name) {
    return std::binary_search(sessionPrograms.begin(), sessionPrograms.end(), name);
}

PackageSafety::PackageSafety(PackageDatabase &database, const std::string &root)
    : m_database(database), m_systemsRefusal(systemsRefusal(root)) {
    std::unordered_map<std::string, std::string> reasons;
    for (const KeptFile &file : keptFiles)
        reasons.emplace(file.path, file.reason);
    std::string own;
    if (root.empty()) {
        addKernel(reasons);
        addSession(reasons);
        own = linkTarget("/proc/self/exe");
    }
    PathSet paths = {own};
    for (const auto &[path, reason] : reasons)
        paths.insert(path);
    for (const auto &[path, name] : database.owners(paths)) {
        if (path == own)
            m_own = name;
        else
            m_kept.emplace(name, reasons[path]);
    }
}

Refusal PackageSafety::refusalOf(const std::vector<std::string> &names) const {
    if (!m_systemsRefusal.empty())
        return {PackageRefusal::ImageBased, m_systemsRefusal};
    if (std::string unfinished = m_database.unfinished(); !unfinished.empty())
        return {PackageRefusal::Interrupted, std::move(unfinished)};
    for (const std::string &name : names) {
        const PackageRecord *record = m_database.find(name);
        if (!record || !record->isInstalled)
            return {PackageRefusal::Gone, name + " is not installed."};
        if (name == m_own)
            return {PackageRefusal::NeededByUs, "This program is part of " + name + '.'};
        if (record->role == PackageRole::Required)
            return {PackageRefusal::Essential, "The system cannot do without " + name + '.'};
        if (const auto kept = m_kept.find(name); kept != m_kept.end())
            return {PackageRefusal::Essential, name + ' ' + kept->second + '.'};
        if (record->isHeld)
            return {PackageRefusal::Held,
                    name + " is on hold, which \"apt-mark unhold " + name + "\" ends."};
    }
    return {};
}

} // namespace brightsweep
