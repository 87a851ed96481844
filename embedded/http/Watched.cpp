#include "http/Watched.h"

#include <utility>

namespace embedded::http {

namespace {

Answer seen(Answer answer, const ReplyWatch& see) {
    if (Reply* reply = std::get_if<Reply>(&answer)) {
        see(*reply);
        return answer;
    }
    Work work = std::get<Work>(std::move(answer));
    std::function<Reply()> late;
    if (work.late)
        late = [late = std::move(work.late), see] {
            Reply reply = late();
            see(reply);
            return reply;
        };
    return Work([make = std::move(work.make), see] { return seen(make(), see); },
                std::move(work.lanes), std::move(late));
}

} // namespace

Handler watched(Handler handler, std::function<ReplyWatch(const Request&)> watch) {
    return [handler = std::move(handler), watch = std::move(watch)](Request&& request) -> Answer {
        const ReplyWatch see = watch(request);
        return seen(handler(std::move(request)), see);
    };
}

} // namespace embedded::http
