#pragma once
#include <httplib.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

// An HTTP server on 127.0.0.1 and an ephemeral port for one test. It answers at most 64 requests
// and stops by itself after 30 seconds, whatever the test does.
class LocalServer {
public:
    using Handler = std::function<void(const httplib::Request&, httplib::Response&)>;

    LocalServer() {
        server.Get(".*", [this](const httplib::Request& request, httplib::Response& response) {
            const Handler current = [this] {
                std::lock_guard<std::mutex> guard(lock);
                return handler;
            }();
            if
 (++requests > 64 || !current) response.status = 503;
            else current(request, response);
        });
        port = server.bind_to_any_port("127.0.0.1");
        listener = std::thread([this] { server.listen_after_bind(); });
        watchdog = std::thread([this] {
            std::unique_lock<std::mutex> guard(lock);
            ended.wait_for(guard, std::chrono::seconds(30), [this] { return done; });
            server.stop();
        });
        while (!server.is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ~LocalServer() {
        {
            std::lock_guard<std::mutex> guard(lock);
            done = true;
        }
        ended.notify_all();
        watchdog.join();
        listener.join();
    }
    void answer(Handler next) {
        std::lock_guard<std::mutex> guard(lock);
        handler = std::move(next);
    }
    std::string address() const { return "127.0.0.1:" + std::to_string(port); }

    std::atomic<int> requests{0};
    int port = 0;

private:
    httplib::Server server;
    std::mutex lock;
    std::condition_variable ended;
    bool done = false;
    Handler handler;
    std::thread listener, watchdog;
};
