#include "link/io_thread.h"

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>

#include <future>
#include <thread>

namespace ktr {

struct IoThread::Private
{
    explicit Private(const NameResolver::Options &options)
        : names(std::make_unique<NameResolver>(context, options))
    {}

    asio::io_context context{1};
    std::unique_ptr<NameResolver> names;
    asio::executor_work_guard<asio::io_context::executor_type> work{context.get_executor()};
    std::thread thread{[this] { context.run(); }};
};

IoThread::IoThread(const NameResolver::Options &names) : d(std::make_unique<Private>(names)) {}

IoThread::~IoThread()
{
    run([this] { d->names.reset(); });
    d->work.reset();
    d->thread.join(); // after the pending work
}

asio::io_context &IoThread::context()
{
    return d->context;
}

NameResolver &IoThread::names()
{
    return *d->names;
}

void IoThread::run(const std::function<void()> &work)
{
    std::promise<void> done;
    asio::post(d->context, [&] {
        work();
        done.set_value();
    });
    done.get_future().wait();
}

} // namespace ktr
