#include "link/event_dispatcher.h"

#include <algorithm>
#include <system_error>

#include "link/delivered_packet.h"
#include "link/event_listener.h"

CQLibEvents_Listener::~CQLibEvents_Listener() = default;
CQLibEvents_Filter::~CQLibEvents_Filter() = default;

CQLibEventDispatcher::CQLibEventDispatcher() = default;

CQLibEventDispatcher::~CQLibEventDispatcher() {
    CQLibEventDispatcher::Stop();
}

void CQLibEventDispatcher::AddListener(CQLibEvents_Listener* pListener, CQLibEvents_Filter* pFilter) {
    StartDelivery();
    const std::lock_guard lock(m_listLock);
    m_listeners.emplace_back(pListener, pFilter);
}

void CQLibEventDispatcher::AddConnectionListener(CQLibEventListener* pListener) {
    AddListener(pListener, nullptr);
    const std::lock_guard lock(m_listLock);
    m_pConnectionListener = pListener;
}

bool CQLibEventDispatcher::StartDelivery() {
    const std::lock_guard lock(m_listLock);
    if (m_thread.joinable())
        return true;
    try {
        m_thread = std::thread(&CQLibEventDispatcher::Deliver, this);
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

void CQLibEventDispatcher::RemoveListener(CQLibEvents_Listener* pListener) {
    const std::lock_guard lock(m_listLock);
    const auto found = std::find_if(m_listeners.begin(), m_listeners.end(),
                                    [&](const auto& pair) { return pair.first == pListener; });
    if (found != m_listeners.end())
        m_listeners.erase(found);
}

void CQLibEventDispatcher::Stop() {
    {
        const std::lock_guard lock(m_queueLock);
        m_bStop = true;
    }
    m_posted.notify_one();
    std::thread thread;
    {
        // Joining under the list lock would deadlock: the delivery in progress may need it.
        const std::lock_guard lock(m_listLock);
        thread.swap(m_thread);
    }
    if (thread.joinable())
        thread.join();
}

bool CQLibEventDispatcher::OnThreadStart() {
    return true;
}

bool CQLibEventDispatcher::OnThreadExit() {
    return true;
}

int CQLibEventDispatcher::PostEvent(DWORD iLength, const unsigned char* pData, unsigned int iValue3,
                                    LONG iValue4, short iValue5, DWORD iValue6) {
    CQLibEvent event{iLength, CopyForDelivery({pData, iLength}), iValue3, iValue4, iValue5, iValue6};
    {
        const std::lock_guard lock(m_queueLock);
        m_events.push_back(std::move(event));
    }
    m_posted.notify_one();
    return 0;
}

bool CQLibEventDispatcher::HasDelivered() {
    const std::lock_guard lock(m_queueLock);
    return !m_bStop && !m_bDelivering && m_events.empty();
}

bool CQLibEventDispatcher::IsDirect() {
    if (!HasDelivered())
        return false;
    const std::lock_guard lock(m_listLock);
    return m_pConnectionListener != nullptr && m_listeners.size() == 1 &&
           !m_pConnectionListener->HasCallBack();
}

bool CQLibEventDispatcher::PassDirectly(std::span<unsigned char> packet) {
    if (!HasDelivered())
        return false;
    const std::lock_guard lock(m_listLock);
    return m_pConnectionListener != nullptr && m_listeners.size() == 1 &&
           m_pConnectionListener->ReceiveDirectly(packet);
}

void CQLibEventDispatcher::HandOver(std::span<unsigned char> packet) {
    if (!PassDirectly(packet))
        PostEvent(static_cast<DWORD>(packet.size()), packet.data());
}

void CQLibEventDispatcher::Deliver() {
    if (!OnThreadStart())
        return;
    CQLibEvent event;
    while (TakeEvent(event))
        HandToListeners(event);
    OnThreadExit();
}

bool CQLibEventDispatcher::TakeEvent(CQLibEvent& event) {
    std::unique_lock lock(m_queueLock);
    m_bDelivering = false;
    m_posted.wait(lock, [this] { return m_bStop || !m_events.empty(); });
    if (m_bStop)
        return false;
    event = std::move(m_events.front());
    m_events.pop_front();
    m_bDelivering = true;
    return true;
}

void CQLibEventDispatcher::HandToListeners(const CQLibEvent& event) {
    const std::lock_guard lock(m_listLock);
    const auto iLength = static_cast<LONG>(event.iLength);
    for (const auto& [pListener, pFilter] : m_listeners) {
        if (pFilter != nullptr && !pFilter->acceptMessage(iLength, event.pData.get(), event.iValue3,
                                                          event.iValue4, event.iValue5, event.iValue6))
            continue;
        pListener->messageReceived(iLength, event.pData.get(), event.iValue3, event.iValue4, event.iValue5,
                                   event.iValue6);
    }
}
