#include "tessel/cfitsio.h"

#include <dlfcn.h>
#include <pthread.h>

namespace pavane
{

namespace
{

template <typename Function>
int find(void* library, const char* name, Function*& function)
{
    function = reinterpret_cast<Function*>(dlsym(library, name));
    return function != nullptr;
}

/// What several threads wait for inside of CFITSIO: around everything, and while that lock is made.
pthread_mutex_t* innerLocks[2] = {};

void lockInner()
{
    for (pthread_mutex_t* const each : innerLocks)
        (void)pthread_mutex_lock(each);
}

void unlockInner()
{
    for (pthread_mutex_t* const each : innerLocks)
        (void)pthread_mutex_unlock(each);
}

/// The one thread of a copy has another number than the one that locked, so it cannot unlock.
void renewInner()
{
    pthread_mutexattr_t again;
    (void)pthread_mutexattr_init(&again);
    (void)pthread_mutexattr_settype(&again, PTHREAD_MUTEX_RECURSIVE);
    for (pthread_mutex_t* const each : innerLocks)
        (void)pthread_mutex_init(each, &again);
    (void)pthread_mutexattr_destroy(&again);
}

/// A library made for one thread has no locks, and none are needed then.
void guardForks(void* library)
{
    void (*start)() = nullptr;
    innerLocks[0] = static_cast<pthread_mutex_t*>(dlsym(library, "Fitsio_Lock"));
    innerLocks[1] = static_cast<pthread_mutex_t*>(dlsym(library, "Fitsio_InitLock"));
    if (!innerLocks[0] || !innerLocks[1] || !find(library, "fitsio_init_lock", start))
        return;
    start();
    (void)pthread_atfork(lockInner, unlockInner, renewInner);
}

struct Loaded {
    Cfitsio functions;
    std::string error;

    Loaded()
    {
        void* const library = dlopen(PAVANE_CFITSIO, RTLD_NOW | RTLD_LOCAL);
        Cfitsio& f = functions;
        f.isLoaded =
            library && find(library, "ffdkopn", f.openDiskFile) &&
            find(library, "ffmahd", f.moveToHdu) && find(library, "ffpscl", f.setScale) &&
            find(library, "ffgpxvll", f.readPixels) && find(library, "ffimem", f.createInMemory) &&
            find(library, "ffcrim", f.createImage) && find(library, "ffcrtb", f.createTable) &&
            find(library, "ffpkyj", f.writeWholeKey) && find(library, "ffpkyd", f.writeNumberKey) &&
            find(library, "ffpkyl", f.writeFlagKey) && find(library, "ffpkys", f.writeTextKey) &&
            find(library, "ffpcld", f.writeDoubles) && find(library, "ffpclk", f.writeWholes) &&
            find(library, "ffpcls", f.writeTexts) && find(library, "ffghadll", f.placeOfHdu) &&
            find(library, "ffflus", f.flush) && find(library, "ffclos", f.close) &&
            find(library, "ffgerr", f.statusText);
        if (f.isLoaded) {
            guardForks(library);
        } else {
            const char* const why = dlerror();
            error = why ? why : PAVANE_CFITSIO " lacks a function";
        }
    }
};

}  // namespace

const Cfitsio& cfitsio(std::string& error)
{
    static const auto* const loaded = new Loaded;
    error = loaded->error;
    return loaded->functions;
}

}  // namespace pavane
