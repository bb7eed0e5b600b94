#include "link/io_thread.h"

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>

#include <future>
#include <thread>

namespace ktr {

struct IoThread::Private
{
    asio::io_context context{1};
    asio::executor_work_guard<asio::io_context::executor_type> work{context.get_executor()};
    std::thread thread{[this] { context.run(); }};
};

IoThread::IoThread() : d(std::make_unique<Private>()) {}

IoThread::~IoThread()
{
    d->work.reset();
    d->thread.join(); // what is still to be done ends first
}

asio::io_context &IoThread::context()
{
    return d->context;
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
