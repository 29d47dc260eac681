#include "helper/Confinement.h"

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/landlock.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>

namespace brightsweep::helper {

namespace {

#if defined(__x86_64__)
constexpr std::uint32_t ownArchitecture = AUDIT_ARCH_X86_64;
// Numbers with this bit are the x32 interface's, which the tool does not use.
constexpr std::uint32_t foreignBit = 0x40000000;
#elif defined(__aarch64__)
constexpr std::uint32_t ownArchitecture = AUDIT_ARCH_AARCH64;
constexpr std::uint32_t foreignBit = 0x80000000;
#elif defined(__riscv) && __riscv_xlen == 64
constexpr std::uint32_t ownArchitecture = AUDIT_ARCH_RISCV64;
constexpr std::uint32_t foreignBit = 0x80000000;
#else
constexpr std::uint32_t ownArchitecture = 0;
constexpr std::uint32_t foreignBit = 0x80000000;
#endif

// Younger than some headers; the numbers are the same on every architecture.
constexpr std::uint32_t mountSetattrCall = 442;
constexpr std::uint64_t refer = 1ull << 13;     // LANDLOCK_ACCESS_FS_REFER, version 2
constexpr std::uint64_t truncate_ = 1ull << 14; // LANDLOCK_ACCESS_FS_TRUNCATE, version 3

constexpr std::array<std::uint32_t, 31> forbiddenCalls = {
    SYS_socket,
    SYS_socketpair,
    SYS_connect,
    SYS_bind,
    SYS_listen,
    SYS_accept4,
    SYS_sendto,
    SYS_sendmsg,
    SYS_ptrace,
    SYS_process_vm_readv,
    SYS_process_vm_writev,
    SYS_pidfd_getfd,
    SYS_mount,
    SYS_umount2,
    SYS_move_mount,
    SYS_open_tree,
    SYS_fsopen,
    SYS_fsmount,
    SYS_fsconfig,
    SYS_pivot_root,
    SYS_chroot,
    mountSetattrCall,
    SYS_init_module,
    SYS_finit_module,
    SYS_delete_module,
    SYS_kexec_load,
    SYS_bpf,
    SYS_unshare,
    SYS_setns,
    SYS_reboot,
    SYS_perf_event_open,
};

constexpr std::size_t headLength = 5;
constexpr std::size_t filterLength = headLength + forbiddenCalls.size() + 2;

constexpr sock_filter statement(std::uint16_t code, std::uint32_t value) {
    return {code, 0, 0, value};
}
constexpr sock_filter jump(std::uint16_t code, std::uint32_t value, std::size_t ifTrue,
                           std::size_t ifFalse) {
    return {code, std::uint8_t(ifTrue), std::uint8_t(ifFalse), value};
}

// See seccomp(2). Each comparison jumps to the last statement, the refusal, or goes on.
constexpr std::array<sock_filter, filterLength> makeFilter() {
    std::array<sock_filter, filterLength> filter{};
    constexpr std::size_t refusal = filterLength - 1;
    std::size_t i = 0;
    filter[i++] = statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, arch));
    filter[i] = jump(BPF_JMP | BPF_JEQ | BPF_K, ownArchitecture, 0, refusal - i - 1);
    ++i;
    filter[i++] = statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr));
    filter[i] = jump(BPF_JMP | BPF_JSET | BPF_K, foreignBit, refusal - i - 1, 0);
    ++i;
    for (const std::uint32_t call : forbiddenCalls) {
        filter[i] = jump(BPF_JMP | BPF_JEQ | BPF_K, call, refusal - i - 1, 0);
        ++i;
    }
    filter[i++] = statement(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
    filter[refusal] = statement(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM);
    return filter;
}

std::uint64_t changes() {
    const long version =
        ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1)
        return 0;
    std::uint64_t all = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                        LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_CHAR |
                        LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG |
                        LANDLOCK_ACCESS_FS_MAKE_SOCK | LANDLOCK_ACCESS_FS_MAKE_FIFO |
                        LANDLOCK_ACCESS_FS_MAKE_BLOCK | LANDLOCK_ACCESS_FS_MAKE_SYM;
    if (version >= 2)
        all |= refer;
    if (version >= 3)
        all |= truncate_;
    return all;
}

bool allowRemovingBelow(int directory) {
    landlock_ruleset_attr rules{};
    rules.handled_access_fs = changes();
    if (rules.handled_access_fs == 0)
        return true;
    const int ruleset = int(::syscall(SYS_landlock_create_ruleset, &rules, sizeof rules, 0));
    landlock_path_beneath_attr below{};
    below.allowed_access = LANDLOCK_ACCESS_FS_REMOVE_DIR | LANDLOCK_ACCESS_FS_REMOVE_FILE;
    below.parent_fd = directory;
    const bool done =
        ruleset >= 0 &&
        ::syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &below, 0) == 0 &&
        ::syscall(SYS_landlock_restrict_self, ruleset, 0) == 0;
    if (ruleset >= 0)
        ::close(ruleset);
    return done;
}

} // namespace

bool confineToRemoving(int directory) {
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || !allowRemovingBelow(directory))
        return false;
    if constexpr (ownArchitecture == 0)
        return true;
    static constexpr auto filter = makeFilter();
    sock_fprog program{};
    program.len = filter.size();
    program.filter = const_cast<sock_filter *>(filter.data());
    return ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program, 0, 0) == 0 || errno == EINVAL;
}

} // namespace brightsweep::helper
