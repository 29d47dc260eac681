#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace brightsweep::test {

/// A dpkg database below a prefix, of packages that depend on one another in every way that dpkg
/// knows: plainly, before, on one of two, on a version, on what others provide. The last of them
/// are applications with an entry and a program, a few of which have plugins. All dependencies are
/// met.
struct SyntheticPackages {
    static constexpr unsigned filesOfEach = 110; // as on a real system

    SyntheticPackages(const std::filesystem::path &root, unsigned count, unsigned applicationCount,
                      unsigned seed)
        : m_random(seed) {
        using std::to_string;
        const auto info = root / "var/lib/dpkg/info";
        const auto entries = root / "usr/share/applications";
        for (const auto &folder : {info, root / "var/lib/dpkg/updates", entries, root / "usr/bin"})
            std::filesystem::create_directories(folder);
        std::ofstream status(root / "var/lib/dpkg/status");
        for (unsigned i = 0; i < count; ++i) {
            const bool isApplication = i + applicationCount >= count;
            const std::string name = (isApplication ? "app" : "lib") + to_string(i);
            std::string depends;
            const unsigned most = i < 20 ? 0 : below(4);
            for (unsigned d = 0; d < most; ++d)
                depends += (depends.empty() ? "" : ", ") + dependency();
            status << "Package: " << name << "\nStatus: install ok installed\nPriority: optional\n"
                   << "Section: misc\nInstalled-Size: " << 10 + below(5000)
                   << "\nMaintainer: x <x@x>\nArchitecture: amd64\nVersion: 1." << i << "-1\n";
            if (below(10) == 0)
                status << "Provides: virtual" << i % 20 << '\n';
            if (!depends.empty())
                status << (below(8) == 0 ? "Pre-Depends: " : "Depends: ") << depends << '\n';
            status << "Description: x\n " << std::string(600, 'x') + "\n\n";
            std::ofstream list(info / (name + ".list"));
            list << "/.\n/usr\n/usr/share\n";
            for (unsigned file = 0; file < filesOfEach; ++file)
                list << "/usr/share/doc/" << name << "/a-folder/with-a-file-" << file << ".txt\n";
            if (isApplication) {
                list << "/usr/share/applications/" << name << ".desktop\n/usr/bin/" << name << '\n';
                std::ofstream(root / "usr/bin" / name) << "x";
                std::filesystem::permissions(root / "usr/bin" / name, std::filesystem::perms(0755));
                std::ofstream entry(entries / (name + ".desktop"));
                entry << "[Desktop Entry]\nType=Application\nExec=" << name << " %U\n";
                for (unsigned language = 0; language < 60; ++language)
                    entry << "Name[x" << language << "]=A name in some language\n";
                entry << "Name=" << name << '\n';
                applications.push_back(name);
            }
            names.push_back(name);
        }
        // A name that nobody provides otherwise.
        for (unsigned i = 0; i < 20; ++i)
            status << "Package: provider" << i << "\nStatus: install ok installed\n"
                   << "Priority: optional\nArchitecture: all\nVersion: 1\nMaintainer: x <x@x>\n"
                   << "Provides: virtual" << i << "\nDescription: x\n\n";
    }

    std::vector<std::string> names;
    std::vector<std::string> applications;

private:
    unsigned below(unsigned limit) {
        return std::uniform_int_distribution(0u, limit - 1)(m_random);
    }

    // On a package before; more often on one that came late, so that few have very many dependents.
    std::string dependency() {
        const auto one = [this] {
            const auto first = below(3) == 0 ? 0 : unsigned(names.size()) * 3 / 4;
            return names[first + below(unsigned(names.size()) - first)];
        };
        switch (below(8)) {
        case 0:
            return one() + " | " + one();
        case 1:
            return "virtual" + std::to_string(below(20));
        case 2:
            return one() + " (>= 1.0)";
        case 3:
            return "missing | " + one();
        default:
            return one();
        }
    }

    std::mt19937 m_random;
};

} // namespace brightsweep::test
