// SPDX-License-Identifier: MIT
#include "platform/quicklook/Confinement.h"

#include "platform/foundation/Logger.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string_view>

#include <cerrno>
#include <fcntl.h>
#include <linux/landlock.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

// Rights that newer kernels know and the headers here may not.
#ifndef LANDLOCK_ACCESS_FS_TRUNCATE
#define LANDLOCK_ACCESS_FS_TRUNCATE (1ULL << 14)
#endif

namespace platform {

namespace {

constexpr std::uint64_t writing = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR
    | LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_CHAR | LANDLOCK_ACCESS_FS_MAKE_DIR
    | LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_SOCK | LANDLOCK_ACCESS_FS_MAKE_FIFO
    | LANDLOCK_ACCESS_FS_MAKE_BLOCK | LANDLOCK_ACCESS_FS_MAKE_SYM;

const Logger& logger()
{
    static const Logger logger("org.zelk.quicklook", "confinement");
    return logger;
}

bool isWanted()
{
#ifdef ZELK_NO_CONFINEMENT
    return false;
#else
    auto* wish = std::getenv("ZELK_CONFINEMENT");
    return !wish || std::string_view(wish) != "off";
#endif
}

int landlockVersion()
{
    auto version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    return version > 0 ? static_cast<int>(version) : 0;
}

// The rights that a kernel of that version can be told to withhold.
std::uint64_t handledRights(int version)
{
    auto rights = writing | LANDLOCK_ACCESS_FS_EXECUTE;
    if (version >= 2)
        rights |= LANDLOCK_ACCESS_FS_REFER;
    if (version >= 3)
        rights |= LANDLOCK_ACCESS_FS_TRUNCATE;
    return rights;
}

class Descriptor {
public:
    explicit Descriptor(long number)
        : number_(static_cast<int>(number))
    {
    }
    Descriptor(const Descriptor&) = delete; // closes it
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor()
    {
        if (number_ >= 0)
            ::close(number_);
    }
    bool isOpen() const { return number_ >= 0; }
    int number() const { return number_; }

private:
    int number_;
};

// A folder where the rights hold after all. One that is not there needs no rule.
void allow(const Descriptor& ruleset, const std::string& folder, std::uint64_t rights)
{
    Descriptor place(::open(folder.c_str(), O_PATH | O_CLOEXEC | O_DIRECTORY));
    if (!place.isOpen())
        return;
    landlock_path_beneath_attr rule{.allowed_access = rights, .parent_fd = place.number()};
    ::syscall(SYS_landlock_add_rule, ruleset.number(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
}

std::uint64_t addressSpace()
{
    std::uint64_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
}

void lowerLimit(__rlimit_resource resource, std::uint64_t most)
{
    rlimit limit{};
    if (::getrlimit(resource, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max = std::min<rlim_t>(limit.rlim_max, most);
    ::setrlimit(resource, &limit);
}

// A filter that lets everything pass but what is refused. Rules for calls that a machine does not have are left out by
// the library.
class CallFilter {
public:
    CallFilter()
        : context_(seccomp_init(SCMP_ACT_ALLOW))
    {
    }
    CallFilter(const CallFilter&) = delete; // owns the filter
    CallFilter& operator=(const CallFilter&) = delete;
    ~CallFilter()
    {
        if (context_)
            seccomp_release(context_);
    }

    void refuse(std::initializer_list<int> calls, int errorNumber = EPERM)
    {
        for (int call : calls)
            add(call, errorNumber, {});
    }
    void refuseWhen(int call, int errorNumber, const scmp_arg_cmp& comparison)
    {
        add(call, errorNumber, {comparison});
    }

    // For all threads of the process. The kernel forbids gaining rights by programs first.
    bool load()
    {
        if (!context_ || hasFailed_)
            return false;
        seccomp_attr_set(context_, SCMP_FLTATR_CTL_TSYNC, 1);
        return seccomp_load(context_) == 0;
    }

private:
    void add(int call, int errorNumber, std::initializer_list<scmp_arg_cmp> comparisons)
    {
        if (!context_ || call == __NR_SCMP_ERROR)
            return;
        int code =
            seccomp_rule_add_array(context_, SCMP_ACT_ERRNO(static_cast<std::uint32_t>(errorNumber)), call,
                                   static_cast<unsigned>(comparisons.size()), std::data(comparisons));
        // The same rule twice is no fault.
        hasFailed_ = hasFailed_ || (code != 0 && code != -EEXIST);
    }

    scmp_filter_ctx context_;
    bool hasFailed_ = false;
};

void refusePrograms(CallFilter& filter)
{
    filter.refuse({SCMP_SYS(execve), SCMP_SYS(execveat), SCMP_SYS(fork), SCMP_SYS(vfork)});
    // Threads go on; the newer call hides its flags from filters, and the library falls back to the older one.
    filter.refuse({SCMP_SYS(clone3)}, ENOSYS);
    filter.refuseWhen(SCMP_SYS(clone), EPERM, SCMP_A0_64(SCMP_CMP_MASKED_EQ, CLONE_THREAD, 0));
    filter.refuse({SCMP_SYS(ptrace), SCMP_SYS(process_vm_readv), SCMP_SYS(process_vm_writev), SCMP_SYS(kcmp),
                   SCMP_SYS(pidfd_getfd), SCMP_SYS(userfaultfd), SCMP_SYS(perf_event_open), SCMP_SYS(bpf)});
}

// Messages to other processes' signal handlers; one's own are how a process ends itself.
void refuseSignals(CallFilter& filter)
{
    auto self = static_cast<scmp_datum_t>(::getpid());
    filter.refuseWhen(SCMP_SYS(kill), EPERM, SCMP_A0_64(SCMP_CMP_NE, self));
    filter.refuseWhen(SCMP_SYS(tgkill), EPERM, SCMP_A0_64(SCMP_CMP_NE, self));
    filter.refuse({SCMP_SYS(tkill), SCMP_SYS(pidfd_send_signal), SCMP_SYS(rt_sigqueueinfo),
                   SCMP_SYS(rt_tgsigqueueinfo)});
}

void refuseNetwork(CallFilter& filter)
{
    filter.refuseWhen(SCMP_SYS(socket), EACCES, SCMP_A0_32(SCMP_CMP_NE, AF_UNIX));
    // Would do all of the rest behind the filter's back.
    filter.refuse({SCMP_SYS(io_uring_setup), SCMP_SYS(io_uring_enter), SCMP_SYS(io_uring_register)}, ENOSYS);
}

void refuseAdministration(CallFilter& filter)
{
    filter.refuse({SCMP_SYS(mount),
                   SCMP_SYS(umount2),
                   SCMP_SYS(pivot_root),
                   SCMP_SYS(chroot),
                   SCMP_SYS(unshare),
                   SCMP_SYS(setns),
                   SCMP_SYS(open_tree),
                   SCMP_SYS(move_mount),
                   SCMP_SYS(fsopen),
                   SCMP_SYS(fsmount),
                   SCMP_SYS(mount_setattr),
                   SCMP_SYS(init_module),
                   SCMP_SYS(finit_module),
                   SCMP_SYS(delete_module),
                   SCMP_SYS(kexec_load),
                   SCMP_SYS(kexec_file_load),
                   SCMP_SYS(swapon),
                   SCMP_SYS(swapoff),
                   SCMP_SYS(reboot),
                   SCMP_SYS(add_key),
                   SCMP_SYS(request_key),
                   SCMP_SYS(keyctl),
                   SCMP_SYS(setuid),
                   SCMP_SYS(setgid),
                   SCMP_SYS(setresuid),
                   SCMP_SYS(setresgid),
                   SCMP_SYS(setgroups),
                   SCMP_SYS(settimeofday),
                   SCMP_SYS(clock_settime),
                   SCMP_SYS(sethostname),
                   SCMP_SYS(open_by_handle_at)});
}

// What Landlock has no rules for.
void refuseAttributes(CallFilter& filter)
{
    filter.refuse({SCMP_SYS(chmod), SCMP_SYS(fchmod), SCMP_SYS(fchmodat), SCMP_SYS(chown), SCMP_SYS(fchown),
                   SCMP_SYS(lchown), SCMP_SYS(fchownat), SCMP_SYS(utime), SCMP_SYS(utimes),
                   SCMP_SYS(futimesat), SCMP_SYS(utimensat), SCMP_SYS(setxattr), SCMP_SYS(lsetxattr),
                   SCMP_SYS(fsetxattr), SCMP_SYS(removexattr), SCMP_SYS(lremovexattr),
                   SCMP_SYS(fremovexattr)});
}

// Where there are no rules for the file system: a filter sees the flags of a call, not the file.
void refuseWriting(CallFilter& filter)
{
    filter.refuse({SCMP_SYS(creat), SCMP_SYS(mkdir), SCMP_SYS(mkdirat), SCMP_SYS(rmdir), SCMP_SYS(unlink),
                   SCMP_SYS(unlinkat), SCMP_SYS(rename), SCMP_SYS(renameat), SCMP_SYS(renameat2),
                   SCMP_SYS(link), SCMP_SYS(linkat), SCMP_SYS(symlink), SCMP_SYS(symlinkat), SCMP_SYS(mknod),
                   SCMP_SYS(mknodat), SCMP_SYS(truncate)},
                  EACCES);
    filter.refuse({SCMP_SYS(openat2)}, ENOSYS); // its flags lie in memory
    for (unsigned flag : {O_WRONLY, O_RDWR, O_CREAT}) {
        filter.refuseWhen(SCMP_SYS(open), EACCES, SCMP_A1_64(SCMP_CMP_MASKED_EQ, flag, flag));
        filter.refuseWhen(SCMP_SYS(openat), EACCES, SCMP_A2_64(SCMP_CMP_MASKED_EQ, flag, flag));
    }
}

} // namespace

Confinement availableConfinement()
{
    if (!isWanted())
        return {};
    return {.landlockVersion = landlockVersion(), .filtersCalls = ::prctl(PR_GET_SECCOMP, 0, 0, 0, 0) >= 0};
}

std::string describe(const Confinement& confinement)
{
    std::string text;
    if (confinement.landlockVersion > 0)
        text = "Landlock " + std::to_string(confinement.landlockVersion);
    if (confinement.filtersCalls)
        text += text.empty() ? "seccomp" : ", seccomp";
    return text.empty() ? "off" : text;
}

int confineFiles(const std::string& runtimeFolder)
{
    auto version = isWanted() ? landlockVersion() : 0;
    if (version == 0)
        return 0;
    landlock_ruleset_attr attributes{.handled_access_fs = handledRights(version)};
    Descriptor ruleset(::syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0));
    if (!ruleset.isOpen())
        return 0;
    if (!runtimeFolder.empty())
        allow(ruleset, runtimeFolder, attributes.handled_access_fs & ~LANDLOCK_ACCESS_FS_EXECUTE);
    // Terminals and the bit bucket are written to by whoever has messages.
    allow(ruleset, "/dev", LANDLOCK_ACCESS_FS_WRITE_FILE);
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0
        || ::syscall(SYS_landlock_restrict_self, ruleset.number(), 0) != 0) {
        logger().debug("the file system rules were refused");
        return 0;
    }
    return version;
}

bool confineCalls(int landlockVersion)
{
    if (!isWanted())
        return false;
    lowerLimit(RLIMIT_CORE, 0);
    lowerLimit(RLIMIT_NOFILE, 256);
    lowerLimit(RLIMIT_AS, addressSpace() * 3 + (std::uint64_t(1) << 30));
    CallFilter filter;
    refusePrograms(filter);
    refuseSignals(filter);
    refuseNetwork(filter);
    refuseAdministration(filter);
    refuseAttributes(filter);
    if (landlockVersion == 0)
        refuseWriting(filter);
    bool isLoaded = filter.load();
    if (!isLoaded)
        logger().debug("the filter for calls was refused");
    return isLoaded;
}

} // namespace platform
