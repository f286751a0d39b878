// Polls one variable of an SNMP agent. Requests run on threads of their own; the host takes the answers over to its own
// thread before it looks at them. usage: snmp_poll AGENT OID
#include <brindle/brindle.h>

#include <iostream>
#include <mutex>
#include <string>
#include <vector>

struct Poller final : CTimer {
    CSnmpVariable variable;
    int asked = 0, answered = 0, times = 3;
    brindle::RunLoop loop;
    std::mutex lock;
    std::vector<std::string> answers;  // guarded by the lock

    void Run() {
        CreateTimer(1, 200);
        while (answered < times) {  // Wake ends the wait as soon as an answer is there
            loop.RunOnce(1000);
            const std::lock_guard<std::mutex> guard(lock);
            for (const std::string& answer : answers) std::cout << answer << std::endl;
            answered += static_cast<int>(answers.size());
            answers.clear();
        }
    }
    void OnTimer(std::uint64_t timer) override {
        if (++asked == times) KillTimer(timer);
        // A request that cannot start calls nobody back.
        if (!KySnmpGetValue(&variable, &OnAnswer, 0, 500, 1)) ++answered;
    }
    // On the request's thread. The host's number is 32 bits wide, so the one poller is found another way.
    static void OnAnswer(CSnmpVariable* answer, unsigned long, unsigned int result);
};

Poller& ThePoller() {
    static Poller& poller = *new Poller;  // never destroyed: a late answer must find it
    return poller;
}

void Poller::OnAnswer(CSnmpVariable* answer, unsigned long, unsigned int result) {
    Poller& poller = ThePoller();
    const std::lock_guard<std::mutex> guard(poller.lock);
    poller.answers.emplace_back((result ? answer->value : KySnmpLastFailure(answer).text).GetString());
    poller.loop.Wake();
}

int main(int count, char** arguments) {
    if (count < 3) return std::cerr << "usage: snmp_poll AGENT OID\n", 2;
    Poller& poller = ThePoller();
    poller.variable.agent = arguments[1];
    poller.variable.community = "public";
    poller.variable.oid = arguments[2];
    poller.Run();
}
