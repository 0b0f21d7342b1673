// Preloaded: what the system may do to any program, when the environment asks for it. SHORT_CALLS has
// every read and write do a part of what it was asked for, and every third be interrupted first;
// FAIL_WRITE has the write of that number find the disk full, FAIL_ALLOCATION the allocation of that
// number no memory, and COUNT_CALLS names a file that the numbers of both are written to at the end.
// A number written to wake another thread is no write here: the kernel never refuses that.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

static atomic_long allocations, writes, calls;
static long failingAllocation, failingWrite;
static int isShort;
static const char* countFile;

void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void* __libc_memalign(size_t, size_t);

static long numberIn(const char* name) {
  const char* number = getenv(name);
  return number != NULL ? atol(number) : 0;
}

__attribute__((constructor)) static void begin(void) {
  isShort = getenv("SHORT_CALLS") != NULL;
  countFile = getenv("COUNT_CALLS");
  atomic_store(&allocations, 0);
  failingAllocation = numberIn("FAIL_ALLOCATION");
  failingWrite = numberIn("FAIL_WRITE");
}

__attribute__((destructor)) static void end(void) {
  char text[64];
  if (countFile == NULL) return;
  const int size = snprintf(text, sizeof text, "%ld %ld", atomic_load(&allocations),
                            atomic_load(&writes));
  const int fd = open(countFile, O_CREAT | O_WRONLY | O_TRUNC, 0600);
  if (fd < 0 || write(fd, text, (size_t)size) != size) abort();
  close(fd);
}

static int isRefused(void) {
  if (atomic_fetch_add(&allocations, 1) + 1 != failingAllocation) return 0;
  errno = ENOMEM;
  return 1;
}

void* malloc(size_t size) { return isRefused() ? NULL : __libc_malloc(size); }
void* calloc(size_t count, size_t size) { return isRefused() ? NULL : __libc_calloc(count, size); }
void* realloc(void* old, size_t size) { return isRefused() ? NULL : __libc_realloc(old, size); }
void* aligned_alloc(size_t alignment, size_t size) {
  return isRefused() ? NULL : __libc_memalign(alignment, size);
}
int posix_memalign(void** memory, size_t alignment, size_t size) {
  if (isRefused()) return ENOMEM;
  *memory = __libc_memalign(alignment, size);
  return *memory == NULL ? ENOMEM : 0;
}

static int isWaking(size_t size) { return size <= sizeof(long); }

// How much of a call is done; 0 where it is interrupted.
static size_t part(size_t size) {
  if (!isShort || isWaking(size)) return size;
  return atomic_fetch_add(&calls, 1) % 3 == 2 ? 0 : size > 1000 ? 1000 : (size + 1) / 2;
}

static int errorOfRead(size_t size) { return size == 0 ? EINTR : 0; }

static int errorOfWrite(size_t size) {
  if (size == 0) return EINTR;
  if (isWaking(size)) return 0;
  return atomic_fetch_add(&writes, 1) + 1 == failingWrite ? ENOSPC : 0;
}

#define PARTLY(name, errorOf, declared, passed)                              \
  ssize_t name declared {                                                    \
    static ssize_t(*whole) declared;                                         \
    if (whole == NULL) whole = (ssize_t(*) declared)dlsym(RTLD_NEXT, #name); \
    const size_t asked = size;                                               \
    size = part(size);                                                       \
    const int error = asked != 0 ? errorOf(size) : 0;                        \
    if (error == 0) return whole passed;                                     \
    errno = error;                                                           \
    return -1;                                                               \
  }
PARTLY(read, errorOfRead, (int fd, void* to, size_t size), (fd, to, size))
PARTLY(pread, errorOfRead, (int fd, void* to, size_t size, off_t at), (fd, to, size, at))
PARTLY(pread64, errorOfRead, (int fd, void* to, size_t size, off64_t at), (fd, to, size, at))
PARTLY(write, errorOfWrite, (int fd, const void* from, size_t size), (fd, from, size))
