// SPDX-License-Identifier: MIT
#include "platform/base/Confinement.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <vector>

namespace quoddle {

namespace {

#if defined(__x86_64__)
constexpr std::uint32_t kArchitecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t kArchitecture = AUDIT_ARCH_AARCH64;
#else
constexpr std::uint32_t kArchitecture = 0;
#endif

constexpr std::uint32_t kRefuse = SECCOMP_RET_ERRNO | EPERM;
constexpr std::uint32_t kForeignCalls = 0x40000000; // calls from this number on follow another convention of the same processor
constexpr std::uint32_t kOpensForWriting = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC | O_APPEND;

constexpr std::uint32_t kRefused[] = {
    // programs and other processes
    SYS_execve, SYS_execveat, SYS_ptrace, SYS_process_vm_readv, SYS_process_vm_writev, SYS_pidfd_open, SYS_pidfd_getfd, SYS_kill, SYS_tkill,
    SYS_unshare, SYS_setns, SYS_mount, SYS_umount2, SYS_pivot_root, SYS_chroot,
    // connections
    SYS_socket, SYS_socketpair, SYS_connect, SYS_bind, SYS_listen,
    // files and folders
    SYS_openat2, SYS_unlinkat, SYS_renameat, SYS_renameat2, SYS_linkat, SYS_symlinkat, SYS_mkdirat, SYS_mknodat, SYS_fchmod, SYS_fchmodat,
    SYS_fchown, SYS_fchownat, SYS_truncate, SYS_ftruncate, SYS_fallocate, SYS_utimensat, SYS_setxattr, SYS_lsetxattr, SYS_fsetxattr,
    SYS_removexattr, SYS_lremovexattr, SYS_fremovexattr, SYS_copy_file_range,
#if defined(__x86_64__)
    SYS_fork, SYS_vfork, SYS_creat, SYS_unlink, SYS_rename, SYS_link, SYS_symlink, SYS_mkdir, SYS_rmdir, SYS_mknod, SYS_chmod, SYS_chown,
    SYS_lchown, SYS_utime, SYS_utimes, SYS_futimesat,
#endif
    // ways to do the same without the calls above
    SYS_io_uring_setup, SYS_bpf, SYS_perf_event_open, SYS_userfaultfd, SYS_keyctl, SYS_add_key, SYS_request_key, SYS_open_by_handle_at};

class Filter {
public:
    Filter() {
        load(offsetof(seccomp_data, arch));
        add(BPF_JMP | BPF_JEQ | BPF_K, kArchitecture, 1, 0);
        refuse();
        load(offsetof(seccomp_data, nr));
        add(BPF_JMP | BPF_JGE | BPF_K, kForeignCalls, 0, 1);
        refuse();
        for (const std::uint32_t call : kRefused) {
            add(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 1);
            refuse();
        }
        refuseWriting(SYS_openat, 2);
#if defined(__x86_64__)
        refuseWriting(SYS_open, 1);
#endif
        add(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
    }

    bool install() {
        const sock_fprog program{static_cast<unsigned short>(mSteps.size()), mSteps.data()};
        return ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
    }

private:
    void add(int code, std::uint32_t operand, std::uint8_t ifTrue = 0, std::uint8_t ifFalse = 0) {
        mSteps.push_back({static_cast<std::uint16_t>(code), ifTrue, ifFalse, operand});
    }
    void load(std::size_t offset) {
        add(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset));
    }
    void refuse() {
        add(BPF_RET | BPF_K, kRefuse);
    }
    /// `argument` is the index of the argument with the flags. Only its lower half is read, which comes first on both processors.
    void refuseWriting(std::uint32_t call, std::size_t argument) {
        add(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 4);
        load(offsetof(seccomp_data, args) + argument * sizeof(std::uint64_t));
        add(BPF_JMP | BPF_JSET | BPF_K, kOpensForWriting, 0, 1);
        refuse();
        add(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
    }

    std::vector<sock_filter> mSteps;
};

} // namespace

bool confineProcess() {
    return kArchitecture != 0 && ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && Filter().install();
}

} // namespace quoddle
