#include "http/Watched.h"

#include <utility>

namespace embedded::http {

Handler watched(Handler handler, std::function<ReplyWatch(const Request&)> watch) {
    return [handler = std::move(handler), watch = std::move(watch)](Request&& request) -> Answer {
        ReplyWatch see = watch(request);
        Answer answer = handler(std::move(request));
        if (Reply* reply = std::get_if<Reply>(&answer)) {
            see(*reply);
            return answer;
        }
        return Work([work = std::get<Work>(std::move(answer)), see = std::move(see)] {
            Reply reply = work();
            see(reply);
            return reply;
        });
    };
}

} // namespace embedded::http
