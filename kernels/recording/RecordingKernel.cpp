// RecordingKernel.cpp - see RecordingKernel.h.
#include "RecordingKernel.h"

#include "SoftGeometry.h"

#include <algorithm>
#include <cstring>

RecordingKernel::RecordingKernel() = default;

RecordingKernel::~RecordingKernel()
{
    for (auto& plane : mPlanes)
        delete plane.second;
    for (auto& item : mItems)
        delete item.second;
}

// ----- the call log -----

std::vector<std::string> RecordingKernel::CallsNamed(const std::string& name) const
{
    std::vector<std::string> named;
    for (const auto& call : mCalls)
        if (call.compare(0, name.size(), name) == 0 && call.size() > name.size() && call[name.size()] == '(')
            named.push_back(call);
    return named;
}

int RecordingKernel::Count(const std::string& name) const
{
    return static_cast<int>(CallsNamed(name).size());
}

std::vector<std::string> RecordingKernel::CallsSince(std::size_t mark) const
{
    if (mark >= mCalls.size())
        return {};
    return std::vector<std::string>(mCalls.begin() + static_cast<std::ptrdiff_t>(mark), mCalls.end());
}

std::vector<std::string> RecordingKernel::NamesSince(std::size_t mark) const
{
    std::vector<std::string> names;
    for (const auto& call : CallsSince(mark))
        names.push_back(call.substr(0, call.find('(')));
    return names;
}

std::string RecordingKernel::Arg(const ZOR_Point& point)
{
    return "(" + std::to_string(point.x) + "," + std::to_string(point.y) + ")";
}

std::string RecordingKernel::Arg(const ZOR_Point* point)
{
    return point ? Arg(*point) : "null";
}

std::string RecordingKernel::Arg(const ZOR_Rect* rect)
{
    if (!rect)
        return "null";
    return "(" + std::to_string(rect->left) + "," + std::to_string(rect->top) + "," + std::to_string(rect->right) +
           "," + std::to_string(rect->bottom) + ")";
}

std::string RecordingKernel::Arg(const ScaleInfo& scale)
{
    return "[" + std::to_string(scale.scaleX) + "," + std::to_string(scale.scaleY) + "," +
           std::to_string(scale.maxScale) + "," + std::to_string(scale.mode) + "]";
}

std::string RecordingKernel::Arg(const KernelPlaneRecord* record)
{
    return record ? "plane:" + std::to_string(record->id) : "null";
}

std::string RecordingKernel::Arg(const KernelScreenItemRecord* record)
{
    return record ? "item:" + std::to_string(record->id) : "null";
}

std::string RecordingKernel::Arg(const KernelScreenItemSource* source)
{
    if (!source)
        return "null";
    return "src:" + std::to_string(source->kind) + "/" + std::to_string(source->view) + "/" +
           std::to_string(source->loop) + "/" + std::to_string(source->cel) + "/" + std::to_string(source->memId);
}

std::string RecordingKernel::Arg(const char* text)
{
    return text ? "\"" + std::string(text) + "\"" : "null";
}

// ----- input -----

void RecordingKernel::PushEvent(std::uint16_t type, std::uint32_t message, std::uint16_t modifiers, int x, int y,
                                std::uint32_t extra)
{
    KernelEventRecord record = KernelEventRecord();
    record.type = type;
    record.message = message;
    record.modifiers = modifiers;
    record.where = ZOR_Point(x, y);
    record.extra = extra;
    events.push_back(record);
}

void RecordingKernel::GetEvent(std::uint32_t uMask, KernelEventRecord* pRecord)
{
    Log("GetEvent", uMask);
    // The first queued event whose type is in the mask; the others stay queued.
    for (auto it = events.begin(); it != events.end(); ++it) {
        if (it->type & uMask) {
            *pRecord = *it;
            pointer = it->where;
            events.erase(it);
            return;
        }
    }
    *pRecord = KernelEventRecord();
    pRecord->where = pointer;
}

// ----- clocks and random numbers -----

std::uint32_t RecordingKernel::Random(std::uint32_t uLow, std::uint32_t uHigh)
{
    Log("Random", uLow, uHigh);
    if (!randomAnswers.empty()) {
        std::uint32_t answer = randomAnswers.front();
        randomAnswers.pop_front();
        return answer;
    }
    // A low above the high gives the low.
    if (uHigh <= uLow)
        return uLow;
    randomSeed = randomSeed * 1103515245u + 12345u;
    const std::uint64_t span = static_cast<std::uint64_t>(uHigh) - uLow + 1;
    return uLow + static_cast<std::uint32_t>((randomSeed >> 8) % span);
}

void RecordingKernel::SeedRandom(std::uint32_t uSeed)
{
    Log("SeedRandom", uSeed);
    randomSeed = uSeed;
}

std::uint32_t RecordingKernel::GetTime(int iSelector)
{
    Log("GetTime", iSelector);
    return seconds;
}

std::uint32_t RecordingKernel::GetTicks()
{
    Log("GetTicks");
    return ticks;
}

// ----- memory -----

void* RecordingKernel::AllocMemory(std::uint32_t uSize, const char* pFile, int iLine)
{
    return mLedger.Allocate(uSize, pFile, iLine);
}

void RecordingKernel::FreeMemory(void* pBlock)
{
    mLedger.Release(pBlock);
}

// ----- planes -----

KernelPlaneRecord* RecordingKernel::Plane(std::int32_t id) const
{
    auto found = mPlanes.find(id);
    return found == mPlanes.end() ? nullptr : found->second;
}

KernelPlaneRecord* RecordingKernel::NewPlane(int iType, int iColor, ZOR_Rect* pRect, int iWindowIndex, int iPriority,
                                             ZOR_Point* pVanishingPoint, int iPicture, int fMirror)
{
    Log("NewPlane", iType, iColor, pRect, iWindowIndex, iPriority, pVanishingPoint, iPicture, fMirror);
    auto* record = new KernelPlaneRecord(); // value-initialised: the kernel's own bytes are zero
    record->id = mNextPlaneId++;
    record->type = iType;
    record->color = iColor;
    if (pRect)
        record->rect = *pRect;
    record->mirror = fMirror;
    record->picture = iPicture;
    record->priority = iPriority;
    if (pVanishingPoint)
        record->vanishingPoint = *pVanishingPoint;
    mPlanes[record->id] = record;
    return record;
}

void RecordingKernel::AddPlane(KernelPlaneRecord* pRecord)
{
    Log("AddPlane", pRecord);
}

void RecordingKernel::PlaneCreated(KernelPlaneRecord* pRecord)
{
    Log("PlaneCreated", pRecord);
}

void RecordingKernel::DeletePlane(std::int32_t lPlaneId)
{
    Log("DeletePlane", lPlaneId);
    auto found = mPlanes.find(lPlaneId);
    if (found != mPlanes.end()) {
        delete found->second;
        mPlanes.erase(found);
    }
}

void RecordingKernel::UpdatePlane(KernelPlaneRecord* pRecord)
{
    Log("UpdatePlane", pRecord);
}

void RecordingKernel::PlaneRectChanged(KernelPlaneRecord* pRecord)
{
    Log("PlaneRectChanged", pRecord);
}

int RecordingKernel::TopPlanePriority()
{
    Log("TopPlanePriority");
    int top = kPriorityLowest;
    for (const auto& plane : mPlanes)
        top = std::max(top, static_cast<int>(plane.second->priority));
    return top;
}

int RecordingKernel::TopScreenItemPriority(std::int32_t lPlaneId)
{
    Log("TopScreenItemPriority", lPlaneId);
    return topScreenItemPriority;
}

void RecordingKernel::AddPicAt(std::int32_t lPlaneId, int iPicture, int x, int y, int fMirror, int fDeleteCopy)
{
    Log("AddPicAt", lPlaneId, iPicture, x, y, fMirror, fDeleteCopy);
}

void RecordingKernel::SetShowStyle(std::int32_t lPlaneId, int iStyle, int iSpeed, int iColor, int fAnimate,
                                   int fUseReferenceFrame, int iToFrom, int* piArray, int iArraySize, int iDivisions)
{
    Log("SetShowStyle", lPlaneId, iStyle, iSpeed, iColor, fAnimate, fUseReferenceFrame, iToFrom,
        static_cast<const void*>(piArray), iArraySize, iDivisions);
}

int RecordingKernel::ShowStylePercentComplete(std::int32_t lPlaneId)
{
    Log("ShowStylePercentComplete", lPlaneId);
    return showStylePercent;
}

void RecordingKernel::SetScroll(std::int32_t lPlaneId, int iStepX, int iStepY, int iPicture, int fAnimate, int iTicks,
                                int fMirror)
{
    Log("SetScroll", lPlaneId, iStepX, iStepY, iPicture, fAnimate, iTicks, fMirror);
}

void RecordingKernel::MovePlaneItems(std::int32_t lPlaneId, int iDeltaX, int iDeltaY, int fMovePictures)
{
    Log("MovePlaneItems", lPlaneId, iDeltaX, iDeltaY, fMovePictures);
}

// Local coordinates count from the plane rectangle's top left corner.
void RecordingKernel::PlaneToLocal(std::int32_t lPlaneId, ZOR_Point* pPoint)
{
    Log("PlaneToLocal", lPlaneId, pPoint);
    if (const KernelPlaneRecord* plane = Plane(lPlaneId)) {
        pPoint->x -= plane->rect.left;
        pPoint->y -= plane->rect.top;
    }
}

void RecordingKernel::PlaneToGlobal(std::int32_t lPlaneId, ZOR_Point* pPoint)
{
    Log("PlaneToGlobal", lPlaneId, pPoint);
    if (const KernelPlaneRecord* plane = Plane(lPlaneId)) {
        pPoint->x += plane->rect.left;
        pPoint->y += plane->rect.top;
    }
}

void RecordingKernel::UpdateScreen(int fFlag)
{
    Log("UpdateScreen", fFlag);
    ticks += ticksPerFrame;
}

// ----- screen items -----

KernelScreenItemRecord* RecordingKernel::Item(std::int32_t id) const
{
    auto found = mItems.find(id);
    return found == mItems.end() ? nullptr : found->second;
}

bool RecordingKernel::ItemOnScreen(std::int32_t id) const
{
    auto found = mOnScreen.find(id);
    return found != mOnScreen.end() && found->second;
}

KernelScreenItemRecord* RecordingKernel::NewScreenItem(std::int32_t lPlaneId, KernelScreenItemSource* pSource,
                                                       ZOR_Point pos, ScaleInfo scale)
{
    Log("NewScreenItem", lPlaneId, pSource, pos, scale);
    auto* record = new KernelScreenItemRecord(); // value-initialised: the kernel's own bytes are zero
    record->id = mNextItemId++;
    record->planeId = lPlaneId;
    if (pSource)
        record->source = *pSource;
    record->pos = pos;
    record->scale = scale;
    mItems[record->id] = record;
    mOnScreen[record->id] = false;
    return record;
}

void RecordingKernel::AddScreenItem(KernelScreenItemRecord* pRecord)
{
    Log("AddScreenItem", pRecord);
    mOnScreen[pRecord->id] = true;
}

void RecordingKernel::UpdateScreenItem(KernelScreenItemRecord* pRecord)
{
    Log("UpdateScreenItem", pRecord);
}

void RecordingKernel::DeleteScreenItem(KernelScreenItemRecord* pRecord)
{
    Log("DeleteScreenItem", pRecord);
    if (pRecord) {
        mOnScreen.erase(pRecord->id);
        mItems.erase(pRecord->id);
        delete pRecord;
    }
}

void RecordingKernel::DisposeScreenItem(KernelScreenItemRecord* pRecord)
{
    Log("DisposeScreenItem", pRecord);
    if (pRecord) {
        mOnScreen.erase(pRecord->id);
        mItems.erase(pRecord->id);
        delete pRecord;
    }
}

int RecordingKernel::GetNowSeenRect(std::int32_t lPlaneId, std::int32_t lItemId, ZOR_Rect* pRect)
{
    Log("GetNowSeenRect", lPlaneId, lItemId);
    auto set = nowSeen.find(lItemId);
    if (set != nowSeen.end()) {
        *pRect = set->second;
        return ItemOnScreen(lItemId);
    }
    const KernelScreenItemRecord* item = Item(lItemId);
    if (!item) {
        *pRect = ZOR_Rect(0, 0, -1, -1);
        return 0;
    }
    *pRect = ZOR_Rect(item->pos.x, item->pos.y, item->pos.x + celWidth - 1, item->pos.y + celHeight - 1);
    return ItemOnScreen(lItemId);
}

int RecordingKernel::ScreenItemOnPoint(ZOR_Point* pPoint, std::int32_t lPlaneId, std::int32_t lItemId,
                                       int fCheckSkip)
{
    Log("ScreenItemOnPoint", pPoint, lPlaneId, lItemId, fCheckSkip);
    ZOR_Rect seen;
    auto set = nowSeen.find(lItemId);
    if (set != nowSeen.end())
        seen = set->second;
    else if (const KernelScreenItemRecord* item = Item(lItemId))
        seen = ZOR_Rect(item->pos.x, item->pos.y, item->pos.x + celWidth - 1, item->pos.y + celHeight - 1);
    else
        return 0;
    return pPoint->x >= seen.left && pPoint->x <= seen.right && pPoint->y >= seen.top && pPoint->y <= seen.bottom;
}

int RecordingKernel::NumLoops(int iView)
{
    Log("NumLoops", iView);
    auto found = views.find(iView);
    return found == views.end() ? defaultLoops : static_cast<int>(found->second.size());
}

int RecordingKernel::NumCels(std::uint32_t uView, int iLoop)
{
    Log("NumCels", uView, iLoop);
    auto found = views.find(static_cast<int>(uView));
    if (found == views.end())
        return defaultCels;
    if (iLoop < 0 || iLoop >= static_cast<int>(found->second.size()))
        return 0;
    return found->second[static_cast<std::size_t>(iLoop)];
}

int RecordingKernel::DLLCheckValid(int iMemId)
{
    Log("DLLCheckValid", iMemId);
    auto found = validMemIds.find(iMemId);
    return found != validMemIds.end() && found->second;
}

// ----- polygons -----

std::int32_t RecordingKernel::AddPolygon(std::int32_t lPlaneId, ZOR_Point* pPoints, int iCount, int iPriority,
                                         int iColor, int iStyle, int iPattern, int iThickness, int fClosed)
{
    Log("AddPolygon", lPlaneId, iCount, iPriority, iColor, iStyle, iPattern, iThickness, fClosed);
    Polygon polygon{lPlaneId, std::vector<ZOR_Point>(pPoints, pPoints + std::max(iCount, 0)), iPriority, iColor,
                    iStyle, iPattern, iThickness, fClosed};
    const std::int32_t id = mNextPolygonId++;
    polygons[id] = polygon;
    return id;
}

void RecordingKernel::DeletePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId)
{
    Log("DeletePolygon", lPlaneId, lPolygonId);
    polygons.erase(lPolygonId);
}

void RecordingKernel::UpdatePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId, ZOR_Point* pPoints, int iCount,
                                    int iPriority, int iColor, int iStyle, int iPattern, int iThickness, int fClosed)
{
    Log("UpdatePolygon", lPlaneId, lPolygonId, iCount, iPriority, iColor, iStyle, iPattern, iThickness, fClosed);
    polygons[lPolygonId] = Polygon{lPlaneId, std::vector<ZOR_Point>(pPoints, pPoints + std::max(iCount, 0)),
                                   iPriority, iColor, iStyle, iPattern, iThickness, fClosed};
}

// A point on an edge counts as inside; otherwise the crossing rule decides.
int RecordingKernel::PointInPolygon(int x, int y, ZOR_Point* pPoints, int iCount)
{
    Log("PointInPolygon", x, y, iCount);
    return soft::PointInPolygon(x, y, pPoints, iCount);
}

// ----- cursor -----

void RecordingKernel::ShowCursor() { Log("ShowCursor"); }
void RecordingKernel::HideCursor() { Log("HideCursor"); }

void RecordingKernel::SetCursorPos(ZOR_Point* pPoint)
{
    Log("SetCursorPos", pPoint);
    if (pPoint)
        pointer = *pPoint;
}

void RecordingKernel::SetCursorView(std::uint32_t uView, int iLoop, int iCel)
{
    Log("SetCursorView", uView, iLoop, iCel);
}

// ----- robots -----

void RecordingKernel::InitRobot(std::uint32_t uRobot, std::int32_t lPlaneId, int iPriority, int x, int y, int iValue)
{
    Log("InitRobot", uRobot, lPlaneId, iPriority, x, y, iValue);
    robotDone = 0;
    robotPlaying = 0;
    mRobotPolls = 0;
}

void RecordingKernel::PrepareRobot(int a, int b, int c, int d) { Log("PrepareRobot", a, b, c, d); }

void RecordingKernel::PlayRobot()
{
    Log("PlayRobot");
    robotPlaying = 1;
}

void RecordingKernel::PauseRobot()
{
    Log("PauseRobot");
    robotPlaying = 0;
}

void RecordingKernel::SetRobotPriority(int iPriority) { Log("SetRobotPriority", iPriority); }

int RecordingKernel::IsRobotDone()
{
    Log("IsRobotDone");
    if (robotDoneAfterPolls >= 0 && ++mRobotPolls > robotDoneAfterPolls)
        robotDone = 1;
    return robotDone;
}

int RecordingKernel::IsRobotPlaying()
{
    Log("IsRobotPlaying");
    return robotPlaying;
}

void RecordingKernel::TerminateRobot()
{
    Log("TerminateRobot");
    robotPlaying = 0;
}

std::uint32_t RecordingKernel::GetRobotSignal()
{
    Log("GetRobotSignal");
    if (robotSignals.empty())
        return 0;
    std::uint32_t signal = robotSignals.front();
    robotSignals.pop_front();
    return signal;
}

// ----- messages -----

void RecordingKernel::AddMessage(int k1, int k2, int k3, int k4, int sequence, int talker, const std::string& text,
                                 int audioTicks)
{
    messages.push_back(Message{{k1, k2, k3, k4}, sequence, talker, text, audioTicks});
}

void RecordingKernel::RememberMessage(const Message& message)
{
    for (int i = 0; i < 4; ++i)
        mLastKeys[i] = message.keys[i];
    mLastKeys[4] = message.sequence;
    mHaveLastMessage = true;
}

const RecordingKernel::Message* RecordingKernel::FindMessage(int k1, int k2, int k3, int k4, int sequence) const
{
    for (const auto& message : messages)
        if (message.keys[0] == k1 && message.keys[1] == k2 && message.keys[2] == k3 && message.keys[3] == k4 &&
            message.sequence == sequence)
            return &message;
    return nullptr;
}

const RecordingKernel::Message* RecordingKernel::NextMessage() const
{
    // Found again by its keys: AddMessage may have moved the one last got.
    return mHaveLastMessage ? FindMessage(mLastKeys[0], mLastKeys[1], mLastKeys[2], mLastKeys[3], mLastKeys[4] + 1)
                            : nullptr;
}

int RecordingKernel::SizeOf(const Message* message, int* piSize)
{
    if (!message)
        return 0;
    *piSize = static_cast<int>(message->text.size()) + 1;
    return 1;
}

int RecordingKernel::HandOut(const Message* message, char* pBuffer, int iBufferSize)
{
    if (!message)
        return 0;
    if (iBufferSize > 0) {
        std::strncpy(pBuffer, message->text.c_str(), static_cast<std::size_t>(iBufferSize));
        pBuffer[iBufferSize - 1] = '\0';
    }
    RememberMessage(*message);
    return message->talker;
}

int RecordingKernel::GetMessageSize(int k1, int k2, int k3, int k4, int iSequence, int* piSize)
{
    Log("GetMessageSize", k1, k2, k3, k4, iSequence);
    return SizeOf(FindMessage(k1, k2, k3, k4, iSequence), piSize);
}

int RecordingKernel::GetMessage(int k1, int k2, int k3, int k4, int iSequence, char* pBuffer, int iBufferSize)
{
    Log("GetMessage", k1, k2, k3, k4, iSequence, iBufferSize);
    return HandOut(FindMessage(k1, k2, k3, k4, iSequence), pBuffer, iBufferSize);
}

int RecordingKernel::GetNextMessageSize(int* piSize)
{
    Log("GetNextMessageSize");
    return SizeOf(NextMessage(), piSize);
}

int RecordingKernel::GetNextMessage(char* pBuffer, int iBufferSize)
{
    Log("GetNextMessage", iBufferSize);
    return HandOut(NextMessage(), pBuffer, iBufferSize);
}

void RecordingKernel::GetLastMessageKeys(int* piKeys)
{
    Log("GetLastMessageKeys");
    if (!mHaveLastMessage)
        return;
    for (int i = 0; i < 5; ++i)
        piKeys[i] = mLastKeys[i];
}

int RecordingKernel::PlayMessageAudio(int k1, int k2, int k3, int k4, int iSequence, int a, int iVolume, int b)
{
    Log("PlayMessageAudio", k1, k2, k3, k4, iSequence, a, iVolume, b);
    const Message* message = FindMessage(k1, k2, k3, k4, iSequence);
    if (!message || message->audioTicks <= 0)
        return 0;
    mSpeechEnds[static_cast<int>(message - messages.data())] = ticks + static_cast<std::uint32_t>(message->audioTicks);
    return message->audioTicks;
}

void RecordingKernel::StopMessageAudio(int k1, int k2, int k3, int k4, int iSequence)
{
    Log("StopMessageAudio", k1, k2, k3, k4, iSequence);
    if (const Message* message = FindMessage(k1, k2, k3, k4, iSequence))
        mSpeechEnds.erase(static_cast<int>(message - messages.data()));
}

// Speech plays until the tick count reaches its end.
int RecordingKernel::IsMessageAudioPlaying(int k1, int k2, int k3, int k4, int iSequence, int* piUnused)
{
    Log("IsMessageAudioPlaying", k1, k2, k3, k4, iSequence, static_cast<const void*>(piUnused));
    const Message* message = FindMessage(k1, k2, k3, k4, iSequence);
    if (!message)
        return 0;
    auto found = mSpeechEnds.find(static_cast<int>(message - messages.data()));
    return found != mSpeechEnds.end() && static_cast<std::int32_t>(ticks - found->second) < 0;
}

// ----- sound -----

int RecordingKernel::GetActiveSampleCount()
{
    Log("GetActiveSampleCount");
    return static_cast<int>(playingSamples.size());
}

int RecordingKernel::IsAudioInstalled()
{
    Log("IsAudioInstalled");
    return audioInstalled;
}

int RecordingKernel::PreloadSample(int iSample)
{
    Log("PreloadSample", iSample);
    return 1;
}

void RecordingKernel::PlaySampleAlternate(int iSample, int iQualifier, int iVolume, int iTag)
{
    Log("PlaySampleAlternate", iSample, iQualifier, iVolume, iTag);
    playingSamples[iSample] = iVolume;
}

void RecordingKernel::PlaySample(int iSample, int iQualifier, int iVolume, int iTag, int iUnused)
{
    Log("PlaySample", iSample, iQualifier, iVolume, iTag, iUnused);
    playingSamples[iSample] = iVolume;
}

void RecordingKernel::StopAllSamples()
{
    Log("StopAllSamples");
    playingSamples.clear();
}

void RecordingKernel::StopSample(int iSample, int iQualifier)
{
    Log("StopSample", iSample, iQualifier);
    playingSamples.erase(iSample);
}

int RecordingKernel::PauseAllSamples()
{
    Log("PauseAllSamples");
    return 1;
}

int RecordingKernel::PauseSample(int iSample, int iQualifier)
{
    Log("PauseSample", iSample, iQualifier);
    return playingSamples.count(iSample) ? 1 : 0;
}

int RecordingKernel::ResumeAllSamples()
{
    Log("ResumeAllSamples");
    return 1;
}

int RecordingKernel::ResumeSample(int iSample, int iQualifier)
{
    Log("ResumeSample", iSample, iQualifier);
    return playingSamples.count(iSample) ? 1 : 0;
}

int RecordingKernel::GetGlobalDuration(int* piValue)
{
    Log("GetGlobalDuration", static_cast<const void*>(piValue));
    if (piValue)
        *piValue = 0;
    return 0;
}

void RecordingKernel::GetSampleDuration(int iSample, int* piDuration, int iTag)
{
    Log("GetSampleDuration", iSample, static_cast<const void*>(piDuration), iTag);
    if (piDuration)
        *piDuration = 0;
}

void RecordingKernel::SetSampleRate(int iRate) { Log("SetSampleRate", iRate); }
void RecordingKernel::DefaultSampleRate() { Log("DefaultSampleRate"); }

int RecordingKernel::GetSampleRate()
{
    Log("GetSampleRate");
    return 22050;
}

void RecordingKernel::SetSampleBits(int iBits) { Log("SetSampleBits", iBits); }

int RecordingKernel::GetSampleBits()
{
    Log("GetSampleBits");
    return 16;
}

void RecordingKernel::SetChannelCount(int iChannels) { Log("SetChannelCount", iChannels); }
void RecordingKernel::DefaultChannelCount() { Log("DefaultChannelCount"); }

int RecordingKernel::GetChannelCount()
{
    Log("GetChannelCount");
    return 2;
}

int RecordingKernel::GetAutoVolAdjust()
{
    Log("GetAutoVolAdjust");
    return 0;
}

void RecordingKernel::SetAutoVolAdjust(int iValue) { Log("SetAutoVolAdjust", iValue); }
void RecordingKernel::DistortAllSamples(int iValue) { Log("DistortAllSamples", iValue); }
void RecordingKernel::DistortSample(int iSample, int a, int b) { Log("DistortSample", iSample, a, b); }

int RecordingKernel::GetGlobalVolume()
{
    Log("GetGlobalVolume");
    return globalVolume;
}

int RecordingKernel::GetSampleVolume(int iSample, int* piVolume, int iTag)
{
    Log("GetSampleVolume", iSample, static_cast<const void*>(piVolume), iTag);
    auto found = playingSamples.find(iSample);
    if (found == playingSamples.end())
        return 0;
    if (piVolume)
        *piVolume = found->second;
    return 1;
}

void RecordingKernel::SetGlobalVolume(int iVolume)
{
    Log("SetGlobalVolume", iVolume);
    globalVolume = iVolume;
}

void RecordingKernel::SetSampleVolume(int iSample, int iVolume, int iValue)
{
    Log("SetSampleVolume", iSample, iVolume, iValue);
    auto found = playingSamples.find(iSample);
    if (found != playingSamples.end())
        found->second = iVolume;
}

int RecordingKernel::FadeSample(int iSample, int iTarget, int a, int b, int c, int iTag)
{
    Log("FadeSample", iSample, iTarget, a, b, c, iTag);
    return playingSamples.count(iSample) ? 1 : 0;
}

int RecordingKernel::CheckNoise()
{
    Log("CheckNoise");
    return 0;
}

void RecordingKernel::PanSample(int iSample, int iPan, int iValue) { Log("PanSample", iSample, iPan, iValue); }
void RecordingKernel::StopPanSample(int iSample, int iValue) { Log("StopPanSample", iSample, iValue); }

int RecordingKernel::GetDACCritical()
{
    Log("GetDACCritical");
    return 0;
}

void RecordingKernel::SetDACCritical(int iValue) { Log("SetDACCritical", iValue); }

void RecordingKernel::LoadResource(int iType, int* piNumber, int iValue)
{
    Log("LoadResource", iType, piNumber ? *piNumber : -1, iValue);
}

void RecordingKernel::LockResource(int iType, int iNumber) { Log("LockResource", iType, iNumber); }
void RecordingKernel::UnlockResource(int iType, int iNumber) { Log("UnlockResource", iType, iNumber); }

int RecordingKernel::ResourceExists(int iType, int iNumber)
{
    Log("ResourceExists", iType, iNumber);
    auto found = resources.find({iType, iNumber});
    return found != resources.end() && found->second;
}

// ----- VMD movies -----

unsigned RecordingKernel::OpenVmd(const char* pFileName, int iCacheSize, int iOpenArgument)
{
    Log("OpenVmd", pFileName, iCacheSize, iOpenArgument);
    vmdStatus |= 1u;
    return movieResult;
}

void RecordingKernel::SetVmdPlacement(int x, int y, int iFlags, int r, int g, int b)
{
    Log("SetVmdPlacement", x, y, iFlags, r, g, b);
}

unsigned RecordingKernel::PlayVmd(int iEventFlags, int a, int b) { return MovieCall("PlayVmd", iEventFlags, a, b); }
unsigned RecordingKernel::StopVmd() { return MovieCall("StopVmd"); }
unsigned RecordingKernel::ResumeVmd() { return MovieCall("ResumeVmd"); }

unsigned RecordingKernel::CloseVmd()
{
    Log("CloseVmd");
    vmdStatus = 0;
    return movieResult;
}

unsigned RecordingKernel::GetVmdLength()
{
    Log("GetVmdLength");
    return vmdLength;
}

unsigned RecordingKernel::GetVmdStatus()
{
    Log("GetVmdStatus");
    return vmdStatus;
}

unsigned RecordingKernel::GetVmdFramesSkipped()
{
    Log("GetVmdFramesSkipped");
    return vmdFramesSkipped;
}

void RecordingKernel::SetVmdPalette() { Log("SetVmdPalette"); }
void RecordingKernel::RestrictVmdPalette(int a, int b) { Log("RestrictVmdPalette", a, b); }
void RecordingKernel::ShowVmdCursor(int fShow) { Log("ShowVmdCursor", fShow); }
void RecordingKernel::InitVmdBlobs() { Log("InitVmdBlobs"); }
void RecordingKernel::StopVmdBlobs() { Log("StopVmdBlobs"); }

int RecordingKernel::AddVmdBlob(int a, int b, int c, int d, int e)
{
    Log("AddVmdBlob", a, b, c, d, e);
    return 1;
}

void RecordingKernel::DeleteVmdBlob(int iBlob) { Log("DeleteVmdBlob", iBlob); }
void RecordingKernel::BlackOutVmd(int a, int b, int c, int d) { Log("BlackOutVmd", a, b, c, d); }

unsigned RecordingKernel::GetVmdWidth()
{
    Log("GetVmdWidth");
    return 320;
}

unsigned RecordingKernel::GetVmdHeight()
{
    Log("GetVmdHeight");
    return 200;
}

// ----- AVI movies -----

unsigned RecordingKernel::OpenAvi(int iMovie, const char* pFileName)
{
    Log("OpenAvi", iMovie, pFileName);
    aviStatus[iMovie] |= 1u;
    return movieResult;
}

unsigned RecordingKernel::CloseAvi(int iMovie)
{
    Log("CloseAvi", iMovie);
    aviStatus.erase(iMovie);
    return movieResult;
}

void RecordingKernel::SetAviRect(int iMovie, int x, int y, int w, int h) { Log("SetAviRect", iMovie, x, y, w, h); }
void RecordingKernel::SetAviPos(int iMovie, int x, int y) { Log("SetAviPos", iMovie, x, y); }

unsigned RecordingKernel::PlayAvi(int iMovie, int a, int b, int iPlayType, int d)
{
    return MovieCall("PlayAvi", iMovie, a, b, iPlayType, d);
}
unsigned RecordingKernel::StopAvi(int iMovie) { return MovieCall("StopAvi", iMovie); }
unsigned RecordingKernel::PauseAvi(int iMovie) { return MovieCall("PauseAvi", iMovie); }
unsigned RecordingKernel::CueAvi(int iMovie, int iFrame) { return MovieCall("CueAvi", iMovie, iFrame); }
unsigned RecordingKernel::SeekAvi(int iMovie, int iFrame) { return MovieCall("SeekAvi", iMovie, iFrame); }
unsigned RecordingKernel::ResumeAvi(int iMovie) { return MovieCall("ResumeAvi", iMovie); }

void RecordingKernel::SetAviPalette(int iMovie) { Log("SetAviPalette", iMovie); }

unsigned RecordingKernel::GetAviLength(int iMovie)
{
    Log("GetAviLength", iMovie);
    auto found = aviLength.find(iMovie);
    return found == aviLength.end() ? 0u : found->second;
}

unsigned RecordingKernel::GetAviFrameNum(int iMovie)
{
    Log("GetAviFrameNum", iMovie);
    auto found = aviFrameNum.find(iMovie);
    return found == aviFrameNum.end() ? 0u : found->second;
}

unsigned RecordingKernel::GetAviStatus(int iMovie)
{
    Log("GetAviStatus", iMovie);
    auto found = aviStatus.find(iMovie);
    return found == aviStatus.end() ? 0u : found->second;
}

unsigned RecordingKernel::SetAviEvent(int iEventFlags) { return MovieCall("SetAviEvent", iEventFlags); }
