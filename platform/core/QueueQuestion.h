#pragma once

#include "platform/printer_info.h"

#include <string>

namespace pavane
{

/// The attributes of one queue, asked of the scheduler on its local socket, which a program of the
/// print client would ask through the network. Nothing here waits.
class QueueQuestion
{
public:
    QueueQuestion() = default;
    QueueQuestion(const QueueQuestion&) = delete;
    QueueQuestion& operator=(const QueueQuestion&) = delete;
    ~QueueQuestion() { close(); }

    /// 0 when nobody takes the question.
    int ask(const std::string& socket, const CString& queue);
    /// Non-zero when there is no more to come.
    int poll();
    /// What was answered; 0 when that is nothing about a queue.
    int take(PrinterInfo& queue) const;

private:
    void close();

    int socket_ = -1;
    std::string answer_;
};

/// The scheduler's local socket: what CUPS_SERVER names, or the usual one; "" when the user has set
/// the print client to another one.
std::string schedulerSocket();

}  // namespace pavane
