// What the thread sanitizer cannot see, since Qt is built without it: a queued call happens after it was
// queued, and ends before what it carries is destroyed. Both are told of here, and nothing else, so that data
// that a queued call shares with other threads is still looked at.

#include <QCoreApplication>
#include <QThread>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

// invokeMethod() ends in this function of Qt's; the linker puts the one below in front of it.
#define KTR_INVOKE(prefix)                                                                                   \
    prefix##_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv

namespace {

/// A call with what the sanitizer must be told around it. The thread that counts its users down to none, be
/// it the one that queued or the one that called, destroys it.
class ToldCall : public QtPrivate::QSlotObjectBase
{
public:
    explicit ToldCall(QSlotObjectBase *call) : QSlotObjectBase(&act), m_call(call) { __tsan_release(this); }

private:
    static void act(int what, QSlotObjectBase *base, QObject *receiver, void **arguments, bool *)
    {
        auto *told = static_cast<ToldCall *>(base);
        __tsan_acquire(told);
        if (what == Call) {
            told->m_call->call(receiver, arguments);
            __tsan_release(told);
        } else if (what == Destroy) {
            told->m_call->destroyIfLastRef();
            delete told;
        }
    }

    QSlotObjectBase *m_call;
};

/// Qt's own data about an event, under the mutex of the thread's queue.
bool beforeAnEvent(void **)
{
    __tsan_acquire(QThread::currentThread());
    return false; // the event goes on to its receiver
}

template <class Function> Function next(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

[[maybe_unused]] const bool isWatching =
    QInternal::registerCallback(QInternal::EventNotifyCallback, beforeAnEvent);

} // namespace

extern "C" {

bool KTR_INVOKE(__real_)(QObject *, QtPrivate::QSlotObjectBase *, Qt::ConnectionType, void *);
bool KTR_INVOKE(__wrap_)(QObject *receiver, QtPrivate::QSlotObjectBase *call, Qt::ConnectionType type,
                         void *result)
{
    auto *told = new ToldCall(call);
    told->ref(); // so that what is carried is never destroyed within Qt's function
    __tsan_release(receiver->thread());
    const bool invoked = KTR_INVOKE(__real_)(receiver, told, type, result);
    told->destroyIfLastRef();
    return invoked;
}

// QThread::start() and QThread::wait(), in front of Qt's own for Qt Test too, which has a thread that ends
// tests that take too long: what the thread did is over when wait() returns.
void _ZN7QThread5startENS_8PriorityE(QThread *thread, QThread::Priority priority)
{
    QObject::connect(
        thread, &QThread::finished, thread, [thread] { __tsan_release(thread); }, Qt::DirectConnection);
    next<void (*)(QThread *, QThread::Priority)>("_ZN7QThread5startENS_8PriorityE")(thread, priority);
}

bool _ZN7QThread4waitE14QDeadlineTimer(QThread *thread, QDeadlineTimer deadline)
{
    const bool ended =
        next<bool (*)(QThread *, QDeadlineTimer)>("_ZN7QThread4waitE14QDeadlineTimer")(thread, deadline);
    __tsan_acquire(thread);
    return ended;
}
}
