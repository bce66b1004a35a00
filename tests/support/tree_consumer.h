// A thread that destroys the trees handed to it, one at a time: applications that read on one
// thread and free on another. At most two trees are alive, the one handed over and the next.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "tqjson2.h"

class TreeConsumer {
  public:
    TreeConsumer() : thread_([this] { run(); }) {}
    ~TreeConsumer() {
        {
            std::unique_lock<std::mutex> l(lock_);
            changed_.wait(l, [&] { return !handed_; });
            done_ = true;
        }
        changed_.notify_all();
        thread_.join();
    }
    // Waits until the consumer took the tree handed over before.
    void hand_over(tqjson2_nodo_t *raiz) {
        std::unique_lock<std::mutex> l(lock_);
        changed_.wait(l, [&] { return !handed_; });
        handed_ = raiz;
        changed_.notify_all();
    }
    // Waits until the consumer took the last tree handed over.
    void wait_taken() {
        std::unique_lock<std::mutex> l(lock_);
        changed_.wait(l, [&] { return !handed_; });
    }

  private:
    void run() {
        for (;;) {
            std::unique_lock<std::mutex> l(lock_);
            changed_.wait(l, [&] { return handed_ || done_; });
            if (!handed_)
                return;
            tqjson2_nodo_t *raiz = handed_;
            handed_ = nullptr;
            changed_.notify_all();
            l.unlock();
            tqjson2_destruye_nodo(&raiz);
        }
    }

    std::mutex lock_;
    std::condition_variable changed_;
    tqjson2_nodo_t *handed_ = nullptr;
    bool done_ = false;
    std::thread thread_;
};
