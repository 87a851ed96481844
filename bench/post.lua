-- Sends one request again and again. The argument is a file with its bytes: header and body. Prints
-- what came of it as a line of JSON.
local bytes

function init(arguments)
    local file = assert(io.open(arguments[1], "rb"))
    bytes = file:read("*a")
    file:close()
end

function request()
    return bytes
end

function done(summary, latency)
    local failed = summary.errors
    io.write(string.format(
        '{"requests": %d, "microseconds": %d, "p50": %d, "p99": %d, "errors": %d}\n',
        summary.requests, summary.duration, latency:percentile(50), latency:percentile(99),
        failed.connect + failed.read + failed.write + failed.status + failed.timeout))
end
