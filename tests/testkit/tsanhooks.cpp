// Tells the thread sanitizer how the toolkit orders memory accesses.
//
// The toolkit's libraries are not instrumented, so the sanitizer does not see that handing work to the pool,
// posting an event or finishing a future orders what happens before and after it. These functions take the
// place of the toolkit's own, say so, and call them. Compiled in for the thread sanitizer only.

#include <QFutureInterface>
#include <QFutureWatcher>
#include <QMetaObject>
#include <QRunnable>
#include <QThread>
#include <QThreadPool>
#include <QtConcurrent>

#include <dlfcn.h>

extern "C" void __tsan_acquire(void* address);
extern "C" void __tsan_release(void* address);

namespace
{
char order; // one for all: what was handed over by anybody before is seen by whoever takes something
            // afterwards

template <typename Function>
Function next(const char* symbol)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, symbol));
}

/** Runs another runnable between an acquire and a release. */
class OrderedRunnable : public QRunnable
{
public:
    explicit OrderedRunnable(QRunnable* inner) : m_inner(inner) {}
    void run() override
    {
        __tsan_acquire(&order);
        const bool owned = m_inner->autoDelete();
        m_inner->run();
        __tsan_acquire(&order);
        if (owned)
            delete m_inner;
        __tsan_release(&order);
    }

private:
    QRunnable* const m_inner;
};
} // namespace

void QThreadPool::start(QRunnable* runnable, int priority)
{
    static const auto real =
        next<void (*)(QThreadPool*, QRunnable*, int)>("_ZN11QThreadPool5startEP9QRunnablei");
    auto* ordered = new OrderedRunnable(runnable);
    __tsan_release(&order);
    real(this, ordered, priority);
}

bool QThreadPool::tryStart(QRunnable* runnable)
{
    static const auto real =
        next<bool (*)(QThreadPool*, QRunnable*)>("_ZN11QThreadPool8tryStartEP9QRunnable");
    auto* ordered = new OrderedRunnable(runnable);
    __tsan_release(&order);
    const bool started = real(this, ordered);
    if (!started)
        delete ordered;
    return started;
}

void QtConcurrent::ThreadEngineBase::startBlocking()
{
    static const auto real = next<void (*)(QtConcurrent::ThreadEngineBase*)>(
        "_ZN12QtConcurrent16ThreadEngineBase13startBlockingEv");
    __tsan_release(&order);
    real(this);
    __tsan_acquire(&order);
}

void QFutureInterfaceBase::reportFinished()
{
    static const auto real =
        next<void (*)(QFutureInterfaceBase*)>("_ZN20QFutureInterfaceBase14reportFinishedEv");
    __tsan_release(&order);
    real(this);
}

void QFutureInterfaceBase::reportResultsReady(int begin, int end)
{
    static const auto real =
        next<void (*)(QFutureInterfaceBase*, int, int)>("_ZN20QFutureInterfaceBase18reportResultsReadyEii");
    __tsan_release(&order);
    real(this, begin, end);
}

void QFutureInterfaceBase::waitForFinished()
{
    static const auto real =
        next<void (*)(QFutureInterfaceBase*)>("_ZN20QFutureInterfaceBase15waitForFinishedEv");
    real(this);
    __tsan_acquire(&order);
}

void QFutureInterfaceBase::waitForResult(int index)
{
    static const auto real =
        next<void (*)(QFutureInterfaceBase*, int)>("_ZN20QFutureInterfaceBase13waitForResultEi");
    real(this, index);
    __tsan_acquire(&order);
}

void QFutureWatcherBase::waitForFinished()
{
    static const auto real =
        next<void (*)(QFutureWatcherBase*)>("_ZN18QFutureWatcherBase15waitForFinishedEv");
    real(this);
    __tsan_acquire(&order);
}

void QMetaObject::activate(QObject* sender, const QMetaObject* meta, int index, void** arguments)
{
    static const auto real = next<void (*)(QObject*, const QMetaObject*, int, void**)>(
        "_ZN11QMetaObject8activateEP7QObjectPKS_iPPv");
    // Watchers of futures emit from an event handler of their own.
    __tsan_acquire(&order);
    __tsan_release(&order);
    real(sender, meta, index, arguments);
}

bool QMetaObject::invokeMethodImpl(QObject* object, QtPrivate::QSlotObjectBase* slot, Qt::ConnectionType type,
                                   void* result)
{
    static const auto real = next<bool (*)(QObject*, QtPrivate::QSlotObjectBase*, Qt::ConnectionType, void*)>(
        "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv");
    __tsan_release(&order);
    const bool done = real(object, slot, type, result);
    __tsan_acquire(&order);
    return done;
}

/** Whatever is delivered to an object comes after what was handed over. */
bool QObject::event(QEvent* event)
{
    static const auto real = next<bool (*)(QObject*, QEvent*)>("_ZN7QObject5eventEP6QEvent");
    __tsan_acquire(&order);
    const bool handled = real(this, event);
    __tsan_release(&order);
    return handled;
}
