#pragma once

#include <cstddef>
#include <pthread.h>

namespace KesTest {

/// While it lives the system gives no new thread to anybody: no address space holds the stack of one.
class NoThreads {
public:
    NoThreads()
    {
        pthread_getattr_default_np(&_before);
        pthread_attr_t attributes;
        pthread_getattr_default_np(&attributes);
        pthread_attr_setstacksize(&attributes, std::size_t{1} << 50U);
        pthread_setattr_default_np(&attributes);
        pthread_attr_destroy(&attributes);
    }
    ~NoThreads()
    {
        pthread_setattr_default_np(&_before);
        pthread_attr_destroy(&_before);
    }
    NoThreads(const NoThreads&) = delete;
    NoThreads& operator=(const NoThreads&) = delete;

private:
    pthread_attr_t _before{};
};

} // namespace KesTest
