#include "files/Descriptor.h"
#include "files/OpenFaults.h"
#include "files/RegularFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>

#ifdef __linux__
#include <linux/magic.h>
#include <sys/vfs.h>
#endif

namespace zrk {
namespace {

/// Detects the kernel's interfaces: they look regular, but reading one can act, and none has a true length.
bool isOfTheKernel([[maybe_unused]] int file) {
#ifdef __linux__
    static constexpr std::array<std::uint32_t, 24> kKernel{
        PROC_SUPER_MAGIC, SYSFS_MAGIC, DEBUGFS_MAGIC, TRACEFS_MAGIC, SECURITYFS_MAGIC, SELINUX_MAGIC,
        SMACK_MAGIC, CGROUP_SUPER_MAGIC, CGROUP2_SUPER_MAGIC, RDTGROUP_SUPER_MAGIC, BPF_FS_MAGIC,
        PSTOREFS_MAGIC, EFIVARFS_MAGIC, BINFMTFS_MAGIC, NSFS_MAGIC, DEVPTS_SUPER_MAGIC, XENFS_SUPER_MAGIC,
        USBDEVICE_SUPER_MAGIC,
        // without a name in the header
        0x62656570,  // configfs
        0x65735543,  // fusectl
        0x19800202,  // mqueue
        0x67596969,  // rpc_pipefs
        0x6E667364,  // nfsd
        0x5A3C69F0}; // apparmorfs
    struct statfs system {};
    return ::fstatfs(file, &system) == 0 &&
           std::find(kKernel.cbegin(), kKernel.cend(), static_cast<std::uint32_t>(system.f_type)) !=
               kKernel.cend();
#else
    return false;
#endif
}

} // namespace

QString openForReading(QFile& file, Links links) {
    if (QString why = nameProblem(file.fileName()); !why.isEmpty())
        return why;
    const QByteArray path = QFile::encodeName(file.fileName());
    QString notRegular = QStringLiteral("It is not a regular file");
    struct stat status {};
    // First without opening it, because opening a device can act. Then again on the opened file: it can have
    // been replaced in between.
    if (::stat(path.constData(), &status) == 0 && !S_ISREG(status.st_mode))
        return notRegular;
    const int flags =
        O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | (links == Links::Refuse ? O_NOFOLLOW : 0);
    Descriptor opened(::open(path.constData(), flags));
    if (opened.number() < 0)
        return errno == ELOOP && links == Links::Refuse ? notRegular : systemText(errno);
    if (::fstat(opened.number(), &status) != 0 || !S_ISREG(status.st_mode) || isOfTheKernel(opened.number()))
        return notRegular;
    if (!file.open(opened.number(), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return file.errorString();
    (void)opened.release();
    return {};
}

} // namespace zrk
