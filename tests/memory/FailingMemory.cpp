// Preloaded into a program, lets allocations fail. They are counted from main's start on, those of
// every library and thread, and threads themselves. $FAIL_AT is the number of the one that fails;
// with $FAIL_ON all after it fail too. With $SHOW_COUNT standard error ends with how many there
// were.
#include <dlfcn.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

extern "C" void* __libc_malloc(std::size_t);
extern "C" void* __libc_calloc(std::size_t, std::size_t);
extern "C" void* __libc_realloc(void*, std::size_t);
extern "C" void* __libc_memalign(std::size_t, std::size_t);

namespace {

std::atomic<bool> counting{false};
std::atomic<long> count{0};
long failAt = 0;
bool failOn = false;

bool fails() {
  if (!counting) return false;
  const long number = ++count;
  const bool failing = number == failAt || (failOn && number > failAt);
  if (failing) errno = ENOMEM;
  return failing;
}

int (*theMain)(int, char**, char**);

int countedMain(int argc, char** argv, char** environment) {
  if (const char* const at = std::getenv("FAIL_AT")) failAt = std::atol(at);
  failOn = std::getenv("FAIL_ON");
  counting = true;
  const int code = theMain(argc, argv, environment);
  counting = false;
  if (std::getenv("SHOW_COUNT")) std::fprintf(stderr, "%ld\n", count.load());
  return code;
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) { return fails() ? nullptr : __libc_malloc(size); }
void* calloc(std::size_t number, std::size_t size) {
  return fails() ? nullptr : __libc_calloc(number, size);
}
void* realloc(void* memory, std::size_t size) {
  return fails() ? nullptr : __libc_realloc(memory, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return fails() ? nullptr : __libc_memalign(alignment, size);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*),
                   void* argument) {
  static const auto create =
      reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
  return fails() ? EAGAIN : create(thread, attributes, run, argument);
}

int __libc_start_main(int (*main)(int, char**, char**), int argc, char** argv, void (*init)(),
                      void (*fini)(), void (*unload)(), void* stack) {
  theMain = main;
  const auto start =
      reinterpret_cast<decltype(&__libc_start_main)>(dlsym(RTLD_NEXT, "__libc_start_main"));
  return start(countedMain, argc, argv, init, fini, unload, stack);
}

}  // extern "C"
