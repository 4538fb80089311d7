// kernel_ops.h - every operation of KernelServices in one table.
//
// A row says, for one operation of kernel.h: its return type, its name, its
// parameters, the arguments that forward them, how a tape keeps each argument,
// which answers a tape keeps, and the names a report gives the kept values.
// Kernels that wrap or record another take their declarations from here, and
// the tape kernel its whole forwarding code, its operation numbers and the
// names in its reports. Each row is checked against kernel.h below: a row
// whose types drift from the interface does not build, and neither does an
// operation of kernel.h that has no row.
//
//   X(return type, Name, (parameters), (arguments), (tape encoding), (answers), "report names")
//
// A row's place is the operation's number on a tape, so rows are never
// reordered and a new one goes at the end.
//
// Tape encoding: the values a tape keeps of the arguments, in order. An
// argument that is not named there (a buffer to fill, a block to free, the
// source file of an allocation) is not kept.
//   V(x)            the value
//   Given(p)        1 when the pointer is not null, else 0 (what it points at is written by the kernel)
//   Pointee(p)      the int the pointer points at, -1 when null
//   At(p), At(pt)   x and y of a point, by pointer (0, 0 when null) or by value
//   Rect(p)         left, top, right, bottom (all 0 when null)
//   Source(p)       kind, view, loop, cel, memory id of an item's source (all 0 when null)
//   Scale(s)        scaleX, scaleY, maxScale, mode
//   Plane(r)        the 13 values of QUINDLE_KERNEL_PLANE_VALUES (nothing when null)
//   PlaneId(r)      the plane record's id (0 when null)
//   Item(r)         the 21 values of QUINDLE_KERNEL_ITEM_VALUES (nothing when null)
//   ItemIds(r)      the item record's plane id and id (0, 0 when null)
//   Points(p, n)    the count, then x and y of each point
//   Ints(p, n)      the count, then each value
//   Text(s)         the length, then each character
// Lists keep at most their first 1024 entries.
//
// Answers: what a tape keeps of what the wrapped kernel answered, because it
// moves with time, input or chance; a replay serves it back. Every other
// answer comes from the wrapped kernel, in a replay too.
//   Result          the return value (of an operation that answers a number)
//   Out(p)          the int written through the pointer (after Result)
//   Event(p)        the event record's type, message, modifiers, x, y and extra
//   Tick            the return value is the frame's tick (reports name frames by it)
//
// Report names: one name for each value kept, comma-separated; "$name" is a
// text, "*name" a list of points and "#name" a list of ints.
#ifndef QUINDLE_KERNEL_OPS_H
#define QUINDLE_KERNEL_OPS_H

#include "kernel.h"

#include <type_traits>

#define QUINDLE_KERNEL_ITEM_VALUES                                                                                     \
    "plane,item,kind,view,loop,cel,mem,x,y,scaleX,scaleY,maxScale,scaleMode,priority,fixed,z,inset,insetLeft,"        \
    "insetTop,insetRight,insetBottom"
#define QUINDLE_KERNEL_PLANE_VALUES                                                                                    \
    "plane,type,color,left,top,right,bottom,mirror,picture,priority,vanishX,vanishY,pictureChanged"

#define QUINDLE_KERNEL_OPS(X)                                                                                          \
    X(int, GetActiveSampleCount, (), (), (), (Result), "")                                                             \
    X(int, IsAudioInstalled, (), (), (), (), "")                                                                       \
    X(int, PreloadSample, (int iSample), (iSample), (V(iSample)), (), "sample")                                        \
    X(void, PlaySampleAlternate, (int iSample, int iQualifier, int iVolume, int iTag),                                 \
      (iSample, iQualifier, iVolume, iTag), (V(iSample), V(iQualifier), V(iVolume), V(iTag)),                          \
      (), "sample,qualifier,volume,tag")                                                                               \
    X(int, PlayMessageAudio, (int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int iZero1, int iVolume,      \
        int iZero2),                                                                                                   \
      (iKey1, iKey2, iKey3, iKey4, iSequence, iZero1, iVolume, iZero2),                                                \
      (V(iKey1), V(iKey2), V(iKey3), V(iKey4), V(iSequence), V(iZero1), V(iVolume), V(iZero2)),                        \
      (), "key1,key2,key3,key4,sequence,value1,volume,value2")                                                         \
    X(void, PlaySample, (int iSample, int iQualifier, int iVolume, int iTag, int iZero),                               \
      (iSample, iQualifier, iVolume, iTag, iZero), (V(iSample), V(iQualifier), V(iVolume), V(iTag), V(iZero)),         \
      (), "sample,qualifier,volume,tag,value")                                                                         \
    X(void, StopAllSamples, (), (), (), (), "")                                                                        \
    X(void, StopMessageAudio, (int iKey1, int iKey2, int iKey3, int iKey4, int iSequence),                             \
      (iKey1, iKey2, iKey3, iKey4, iSequence), (V(iKey1), V(iKey2), V(iKey3), V(iKey4), V(iSequence)),                 \
      (), "key1,key2,key3,key4,sequence")                                                                              \
    X(void, StopSample, (int iSample, int iQualifier), (iSample, iQualifier),                                          \
      (V(iSample), V(iQualifier)), (), "sample,qualifier")                                                             \
    X(int, PauseAllSamples, (), (), (), (Result), "")                                                                  \
    X(int, PauseSample, (int iSample, int iQualifier), (iSample, iQualifier),                                          \
      (V(iSample), V(iQualifier)), (Result), "sample,qualifier")                                                       \
    X(int, ResumeAllSamples, (), (), (), (Result), "")                                                                 \
    X(int, ResumeSample, (int iSample, int iQualifier), (iSample, iQualifier),                                         \
      (V(iSample), V(iQualifier)), (Result), "sample,qualifier")                                                       \
    X(int, GetGlobalDuration, (int* piTicksLeft), (piTicksLeft),                                                       \
      (Given(piTicksLeft)), (Result, Out(piTicksLeft)), "out")                                                         \
    X(void, GetSampleDuration, (int iSample, int* piDuration, int iTag), (iSample, piDuration, iTag),                  \
      (V(iSample), Given(piDuration), V(iTag)), (), "sample,out,tag")                                                  \
    X(void, SetSampleRate, (int iRate), (iRate), (V(iRate)), (), "rate")                                               \
    X(void, DefaultSampleRate, (), (), (), (), "")                                                                     \
    X(int, GetSampleRate, (), (), (), (), "")                                                                          \
    X(void, SetSampleBits, (int iBits), (iBits), (V(iBits)), (), "bits")                                               \
    X(int, GetSampleBits, (), (), (), (), "")                                                                          \
    X(void, SetChannelCount, (int iChannels), (iChannels), (V(iChannels)), (), "channels")                             \
    X(void, DefaultChannelCount, (), (), (), (), "")                                                                   \
    X(int, GetChannelCount, (), (), (), (), "")                                                                        \
    X(int, GetAutoVolAdjust, (), (), (), (), "")                                                                       \
    X(void, SetAutoVolAdjust, (int fAdjust), (fAdjust), (V(fAdjust)), (), "value")                                     \
    X(void, DistortAllSamples, (int iLevel), (iLevel), (V(iLevel)), (), "value")                                       \
    X(void, DistortSample, (int iSample, int iLevel, int iExtra), (iSample, iLevel, iExtra),                           \
      (V(iSample), V(iLevel), V(iExtra)), (), "sample,value1,value2")                                                  \
    X(int, GetGlobalVolume, (), (), (), (), "")                                                                        \
    X(int, IsMessageAudioPlaying, (int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int* piIgnored),         \
      (iKey1, iKey2, iKey3, iKey4, iSequence, piIgnored),                                                              \
      (V(iKey1), V(iKey2), V(iKey3), V(iKey4), V(iSequence)),                                                          \
      (Result), "key1,key2,key3,key4,sequence")                                                                        \
    X(int, GetSampleVolume, (int iSample, int* piVolume, int iTag), (iSample, piVolume, iTag),                         \
      (V(iSample), Given(piVolume), V(iTag)), (Result, Out(piVolume)), "sample,out,tag")                               \
    X(void, SetGlobalVolume, (int iVolume), (iVolume), (V(iVolume)), (), "volume")                                     \
    X(void, SetSampleVolume, (int iSample, int iVolume, int iExtra), (iSample, iVolume, iExtra),                       \
      (V(iSample), V(iVolume), V(iExtra)), (), "sample,volume,value")                                                  \
    X(int, FadeSample, (int iSample, int iTargetVolume, int iStepTicks, int iDurationTicks, int fStopAtEnd,            \
        int iTag),                                                                                                     \
      (iSample, iTargetVolume, iStepTicks, iDurationTicks, fStopAtEnd, iTag),                                          \
      (V(iSample), V(iTargetVolume), V(iStepTicks), V(iDurationTicks), V(fStopAtEnd), V(iTag)),                        \
      (Result), "sample,target,value1,value2,value3,tag")                                                              \
    X(int, CheckNoise, (), (), (), (Result), "")                                                                       \
    X(void, PanSample, (int iSample, int iPan, int iExtra), (iSample, iPan, iExtra),                                   \
      (V(iSample), V(iPan), V(iExtra)), (), "sample,pan,value")                                                        \
    X(void, StopPanSample, (int iSample, int iExtra), (iSample, iExtra), (V(iSample), V(iExtra)), (), "sample,value")  \
    X(int, GetDACCritical, (), (), (), (), "")                                                                         \
    X(void, SetDACCritical, (int fCritical), (fCritical), (V(fCritical)), (), "value")                                 \
    X(void, LoadResource, (int iType, int* piNumber, int iOne), (iType, piNumber, iOne),                               \
      (V(iType), Pointee(piNumber), V(iOne)), (), "type,number,value")                                                 \
    X(void, LockResource, (int iType, int iNumber), (iType, iNumber), (V(iType), V(iNumber)), (), "type,number")       \
    X(void, UnlockResource, (int iType, int iNumber), (iType, iNumber), (V(iType), V(iNumber)), (), "type,number")     \
    X(int, ResourceExists, (int iType, int iNumber), (iType, iNumber), (V(iType), V(iNumber)), (), "type,number")      \
    X(int, GetNowSeenRect, (std::int32_t lPlaneId, std::int32_t lScreenItemId, ZOR_Rect* pRect),                       \
      (lPlaneId, lScreenItemId, pRect), (V(lPlaneId), V(lScreenItemId)),                                               \
      (), "plane,item")                                                                                                \
    X(int, NumLoops, (int iView), (iView), (V(iView)), (), "view")                                                     \
    X(int, NumCels, (std::uint32_t uView, int iLoop), (uView, iLoop), (V(uView), V(iLoop)), (), "view,loop")           \
    X(int, TopPlanePriority, (), (), (), (), "")                                                                       \
    X(int, TopScreenItemPriority, (std::int32_t lPlaneId), (lPlaneId), (V(lPlaneId)), (), "plane")                     \
    X(int, ScreenItemOnPoint, (ZOR_Point* pPoint, std::int32_t lPlaneId, std::int32_t lScreenItemId, int fCheckSkip),  \
      (pPoint, lPlaneId, lScreenItemId, fCheckSkip),                                                                   \
      (At(pPoint), V(lPlaneId), V(lScreenItemId), V(fCheckSkip)),                                                      \
      (), "x,y,plane,item,checkSkip")                                                                                  \
    X(void, AddScreenItem, (KernelScreenItemRecord* pRecord), (pRecord),                                               \
      (Item(pRecord)), (), QUINDLE_KERNEL_ITEM_VALUES)                                                                 \
    X(void, DeleteScreenItem, (KernelScreenItemRecord* pRecord), (pRecord), (ItemIds(pRecord)), (), "plane,item")      \
    X(void, UpdateScreenItem, (KernelScreenItemRecord* pRecord), (pRecord),                                            \
      (Item(pRecord)), (), QUINDLE_KERNEL_ITEM_VALUES)                                                                 \
    X(std::int32_t, AddPolygon, (std::int32_t lPlaneId, ZOR_Point* pPoints, int iCount, int iPriority, int iColor,     \
        int iStyle, int iPattern, int iThickness, int fClosed),                                                        \
      (lPlaneId, pPoints, iCount, iPriority, iColor, iStyle, iPattern, iThickness, fClosed),                           \
      (V(lPlaneId), Points(pPoints, iCount), V(iPriority), V(iColor), V(iStyle), V(iPattern), V(iThickness),           \
        V(fClosed)),                                                                                                   \
      (), "plane,*points,priority,color,style,pattern,thickness,closed")                                               \
    X(void, DeletePolygon, (std::int32_t lPlaneId, std::int32_t lPolygonId), (lPlaneId, lPolygonId),                   \
      (V(lPlaneId), V(lPolygonId)), (), "plane,polygon")                                                               \
    X(void, UpdatePolygon, (std::int32_t lPlaneId, std::int32_t lPolygonId, ZOR_Point* pPoints, int iCount,            \
        int iPriority, int iColor, int iStyle, int iPattern, int iThickness, int fClosed),                             \
      (lPlaneId, lPolygonId, pPoints, iCount, iPriority, iColor, iStyle, iPattern, iThickness, fClosed),               \
      (V(lPlaneId), V(lPolygonId), Points(pPoints, iCount), V(iPriority), V(iColor), V(iStyle), V(iPattern),           \
        V(iThickness), V(fClosed)),                                                                                    \
      (), "plane,polygon,*points,priority,color,style,pattern,thickness,closed")                                       \
    X(void, UpdateScreen, (int fOne), (fOne), (V(fOne)), (), "flag")                                                   \
    X(void, AddPlane, (KernelPlaneRecord* pRecord), (pRecord), (Plane(pRecord)), (), QUINDLE_KERNEL_PLANE_VALUES)      \
    X(void, DeletePlane, (std::int32_t lPlaneId), (lPlaneId), (V(lPlaneId)), (), "plane")                              \
    X(void, UpdatePlane, (KernelPlaneRecord* pRecord), (pRecord), (Plane(pRecord)), (), QUINDLE_KERNEL_PLANE_VALUES)   \
    X(void, AddPicAt, (std::int32_t lPlaneId, int iPicture, int x, int y, int fMirror, int fDeleteCopy),               \
      (lPlaneId, iPicture, x, y, fMirror, fDeleteCopy),                                                                \
      (V(lPlaneId), V(iPicture), V(x), V(y), V(fMirror), V(fDeleteCopy)),                                              \
      (), "plane,picture,x,y,mirror,deleteCopy")                                                                       \
    X(void, SetShowStyle, (std::int32_t lPlaneId, int iStyle, int iSpeed, int iColor, int fAnimate,                    \
        int fUseReferenceFrame, int iToFrom, int* piArray, int iArraySize, int iDivisions),                            \
      (lPlaneId, iStyle, iSpeed, iColor, fAnimate, fUseReferenceFrame, iToFrom, piArray, iArraySize, iDivisions),      \
      (V(lPlaneId), V(iStyle), V(iSpeed), V(iColor), V(fAnimate), V(fUseReferenceFrame), V(iToFrom), Ints(piArray,     \
        iArraySize), V(iArraySize), V(iDivisions)),                                                                    \
      (), "plane,style,speed,color,animate,useReferenceFrame,toFrom,#array,arraySize,divisions")                       \
    X(int, ShowStylePercentComplete, (std::int32_t lPlaneId), (lPlaneId), (V(lPlaneId)), (Result), "plane")            \
    X(void, SetScroll, (std::int32_t lPlaneId, int iStepX, int iStepY, int iPicture, int fAnimate, int iTicks,         \
        int fMirror),                                                                                                  \
      (lPlaneId, iStepX, iStepY, iPicture, fAnimate, iTicks, fMirror),                                                 \
      (V(lPlaneId), V(iStepX), V(iStepY), V(iPicture), V(fAnimate), V(iTicks), V(fMirror)),                            \
      (), "plane,stepX,stepY,picture,animate,ticks,mirror")                                                            \
    X(void, MovePlaneItems, (std::int32_t lPlaneId, int iDeltaX, int iDeltaY, int fMovePictures),                      \
      (lPlaneId, iDeltaX, iDeltaY, fMovePictures), (V(lPlaneId), V(iDeltaX), V(iDeltaY), V(fMovePictures)),            \
      (), "plane,dx,dy,movePictures")                                                                                  \
    X(void, InitRobot, (std::uint32_t uRobot, std::int32_t lPlaneId, int iPriority, int x, int y, int iValue128),      \
      (uRobot, lPlaneId, iPriority, x, y, iValue128),                                                                  \
      (V(uRobot), V(lPlaneId), V(iPriority), V(x), V(y), V(iValue128)),                                                \
      (), "robot,plane,priority,x,y,value")                                                                            \
    X(void, PrepareRobot, (int iValue0, int iValue50000a, int iValue50000b, int iValue50000c),                         \
      (iValue0, iValue50000a, iValue50000b, iValue50000c),                                                             \
      (V(iValue0), V(iValue50000a), V(iValue50000b), V(iValue50000c)),                                                 \
      (), "value1,value2,value3,value4")                                                                               \
    X(void, PlayRobot, (), (), (), (), "")                                                                             \
    X(void, PauseRobot, (), (), (), (), "")                                                                            \
    X(void, SetRobotPriority, (int iPriority), (iPriority), (V(iPriority)), (), "priority")                            \
    X(int, IsRobotDone, (), (), (), (Result), "")                                                                      \
    X(int, IsRobotPlaying, (), (), (), (Result), "")                                                                   \
    X(void, TerminateRobot, (), (), (), (), "")                                                                        \
    X(std::uint32_t, GetRobotSignal, (), (), (), (Result), "")                                                         \
    X(int, GetMessage, (int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, char* pBuffer, int iBufferSize),    \
      (iKey1, iKey2, iKey3, iKey4, iSequence, pBuffer, iBufferSize),                                                   \
      (V(iKey1), V(iKey2), V(iKey3), V(iKey4), V(iSequence), V(iBufferSize)),                                          \
      (), "key1,key2,key3,key4,sequence,size")                                                                         \
    X(int, GetNextMessage, (char* pBuffer, int iBufferSize), (pBuffer, iBufferSize), (V(iBufferSize)), (), "size")     \
    X(int, GetMessageSize, (int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int* piSize),                   \
      (iKey1, iKey2, iKey3, iKey4, iSequence, piSize), (V(iKey1), V(iKey2), V(iKey3), V(iKey4), V(iSequence)),         \
      (), "key1,key2,key3,key4,sequence")                                                                              \
    X(int, GetNextMessageSize, (int* piSize), (piSize), (), (), "")                                                    \
    X(void, GetLastMessageKeys, (int* piKeys), (piKeys), (), (), "")                                                   \
    X(void, GetEvent, (std::uint32_t uMask, KernelEventRecord* pRecord), (uMask, pRecord),                             \
      (V(uMask)), (Event(pRecord)), "mask")                                                                            \
    X(void, PlaneToLocal, (std::int32_t lPlaneId, ZOR_Point* pPoint), (lPlaneId, pPoint),                              \
      (V(lPlaneId), At(pPoint)), (), "plane,x,y")                                                                      \
    X(void, PlaneToGlobal, (std::int32_t lPlaneId, ZOR_Point* pPoint), (lPlaneId, pPoint),                             \
      (V(lPlaneId), At(pPoint)), (), "plane,x,y")                                                                      \
    X(void, ShowCursor, (), (), (), (), "")                                                                            \
    X(void, HideCursor, (), (), (), (), "")                                                                            \
    X(void, SetCursorPos, (ZOR_Point* pPoint), (pPoint), (At(pPoint)), (), "x,y")                                      \
    X(void, SetCursorView, (std::uint32_t uView, int iLoop, int iCel), (uView, iLoop, iCel),                           \
      (V(uView), V(iLoop), V(iCel)), (), "view,loop,cel")                                                              \
    X(std::uint32_t, Random, (std::uint32_t uLow, std::uint32_t uHigh), (uLow, uHigh),                                 \
      (V(uLow), V(uHigh)), (Result), "low,high")                                                                       \
    X(void, SeedRandom, (std::uint32_t uSeed), (uSeed), (V(uSeed)), (), "seed")                                        \
    X(std::uint32_t, GetTime, (int iSelector), (iSelector), (V(iSelector)), (Result), "selector")                      \
    X(std::uint32_t, GetTicks, (), (), (), (Result, Tick), "")                                                         \
    X(unsigned, OpenVmd, (const char* pFileName, int iCacheSize, int iOpenArgument),                                   \
      (pFileName, iCacheSize, iOpenArgument), (Text(pFileName), V(iCacheSize), V(iOpenArgument)),                      \
      (), "$file,cacheSize,value")                                                                                     \
    X(void, SetVmdPlacement, (int x, int y, int iShowFlags, int iRed, int iGreen, int iBlue),                          \
      (x, y, iShowFlags, iRed, iGreen, iBlue), (V(x), V(y), V(iShowFlags), V(iRed), V(iGreen), V(iBlue)),              \
      (), "x,y,flags,red,green,blue")                                                                                  \
    X(unsigned, PlayVmd, (int iEventFlags, int iEventValue1, int iEventValue2),                                        \
      (iEventFlags, iEventValue1, iEventValue2), (V(iEventFlags), V(iEventValue1), V(iEventValue2)),                   \
      (Result), "flags,value1,value2")                                                                                 \
    X(unsigned, StopVmd, (), (), (), (Result), "")                                                                     \
    X(unsigned, ResumeVmd, (), (), (), (Result), "")                                                                   \
    X(unsigned, CloseVmd, (), (), (), (), "")                                                                          \
    X(unsigned, GetVmdLength, (), (), (), (), "")                                                                      \
    X(unsigned, GetVmdStatus, (), (), (), (Result), "")                                                                \
    X(unsigned, GetVmdFramesSkipped, (), (), (), (Result), "")                                                         \
    X(void, SetVmdPalette, (), (), (), (), "")                                                                         \
    X(void, RestrictVmdPalette, (int iFirstIndex, int iLastIndex), (iFirstIndex, iLastIndex),                          \
      (V(iFirstIndex), V(iLastIndex)), (), "value1,value2")                                                            \
    X(void, ShowVmdCursor, (int fShow), (fShow), (V(fShow)), (), "show")                                               \
    X(void, InitVmdBlobs, (), (), (), (), "")                                                                          \
    X(void, StopVmdBlobs, (), (), (), (), "")                                                                          \
    X(int, AddVmdBlob, (int iLeft, int iTop, int iRight, int iBottom, int iBlockSize),                                 \
      (iLeft, iTop, iRight, iBottom, iBlockSize), (V(iLeft), V(iTop), V(iRight), V(iBottom), V(iBlockSize)),           \
      (), "value1,value2,value3,value4,value5")                                                                        \
    X(void, DeleteVmdBlob, (int iBlob), (iBlob), (V(iBlob)), (), "blob")                                               \
    X(void, BlackOutVmd, (int iLeft, int iTop, int iRight, int iBottom), (iLeft, iTop, iRight, iBottom),               \
      (V(iLeft), V(iTop), V(iRight), V(iBottom)), (), "value1,value2,value3,value4")                                   \
    X(unsigned, GetVmdWidth, (), (), (), (), "")                                                                       \
    X(unsigned, GetVmdHeight, (), (), (), (), "")                                                                      \
    X(int, PointInPolygon, (int x, int y, ZOR_Point* pPoints, int iCount), (x, y, pPoints, iCount),                    \
      (V(x), V(y), Points(pPoints, iCount)), (), "x,y,*points")                                                        \
    X(void*, AllocMemory, (std::uint32_t uSize, const char* pFile, int iLine), (uSize, pFile, iLine),                  \
      (V(uSize)), (), "size")                                                                                          \
    X(void, FreeMemory, (void* pBlock), (pBlock), (), (), "")                                                          \
    X(KernelPlaneRecord*, NewPlane, (int iType, int iColor, ZOR_Rect* pRect, int iWindowIndex, int iPriority,          \
        ZOR_Point* pVanishingPoint, int iPicture, int fMirror),                                                        \
      (iType, iColor, pRect, iWindowIndex, iPriority, pVanishingPoint, iPicture, fMirror),                             \
      (V(iType), V(iColor), Rect(pRect), V(iWindowIndex), V(iPriority), At(pVanishingPoint), V(iPicture),              \
        V(fMirror)),                                                                                                   \
      (), "type,color,left,top,right,bottom,window,priority,vanishX,vanishY,picture,mirror")                           \
    X(void, PlaneRectChanged, (KernelPlaneRecord* pRecord), (pRecord),                                                 \
      (Plane(pRecord)), (), QUINDLE_KERNEL_PLANE_VALUES)                                                               \
    X(KernelScreenItemRecord*, NewScreenItem, (std::int32_t lPlaneId, KernelScreenItemSource* pSource,                 \
        ZOR_Point pos, ScaleInfo scale),                                                                               \
      (lPlaneId, pSource, pos, scale), (V(lPlaneId), Source(pSource), At(pos), Scale(scale)),                          \
      (), "plane,kind,view,loop,cel,mem,x,y,scaleX,scaleY,maxScale,scaleMode")                                         \
    X(void, DisposeScreenItem, (KernelScreenItemRecord* pRecord), (pRecord), (ItemIds(pRecord)), (), "plane,item")     \
    X(int, DLLCheckValid, (int iMemId), (iMemId), (V(iMemId)), (), "mem")                                              \
    X(void, PlaneCreated, (KernelPlaneRecord* pRecord), (pRecord), (PlaneId(pRecord)), (), "plane")                    \
    X(unsigned, OpenAvi, (int iMovie, const char* pFileName), (iMovie, pFileName),                                     \
      (V(iMovie), Text(pFileName)), (), "movie,$file")                                                                 \
    X(unsigned, CloseAvi, (int iMovie), (iMovie), (V(iMovie)), (), "movie")                                            \
    X(void, SetAviRect, (int iMovie, int x, int y, int iWidth, int iHeight), (iMovie, x, y, iWidth, iHeight),          \
      (V(iMovie), V(x), V(y), V(iWidth), V(iHeight)), (), "movie,x,y,width,height")                                    \
    X(void, SetAviPos, (int iMovie, int x, int y), (iMovie, x, y), (V(iMovie), V(x), V(y)), (), "movie,x,y")           \
    X(unsigned, PlayAvi, (int iMovie, int iFirstFrame, int iLastFrame, int iPlayType, int iPlayValue4),                \
      (iMovie, iFirstFrame, iLastFrame, iPlayType, iPlayValue4),                                                       \
      (V(iMovie), V(iFirstFrame), V(iLastFrame), V(iPlayType), V(iPlayValue4)),                                        \
      (Result), "movie,value1,value2,playType,value4")                                                                 \
    X(unsigned, StopAvi, (int iMovie), (iMovie), (V(iMovie)), (Result), "movie")                                       \
    X(unsigned, PauseAvi, (int iMovie), (iMovie), (V(iMovie)), (Result), "movie")                                      \
    X(unsigned, CueAvi, (int iMovie, int iFrame), (iMovie, iFrame), (V(iMovie), V(iFrame)), (), "movie,frame")         \
    X(unsigned, SeekAvi, (int iMovie, int iFrame), (iMovie, iFrame), (V(iMovie), V(iFrame)), (), "movie,frame")        \
    X(unsigned, ResumeAvi, (int iMovie), (iMovie), (V(iMovie)), (Result), "movie")                                     \
    X(void, SetAviPalette, (int iMovie), (iMovie), (V(iMovie)), (), "movie")                                           \
    X(unsigned, GetAviLength, (int iMovie), (iMovie), (V(iMovie)), (), "movie")                                        \
    X(unsigned, GetAviFrameNum, (int iMovie), (iMovie), (V(iMovie)), (Result), "movie")                                \
    X(unsigned, GetAviStatus, (int iMovie), (iMovie), (V(iMovie)), (Result), "movie")                                  \
    X(unsigned, SetAviEvent, (int iEventFlags), (iEventFlags), (V(iEventFlags)), (), "flags")

// Declares every operation as an override, for a kernel class that wraps or records:
//     QUINDLE_KERNEL_OPS(QUINDLE_KERNEL_OVERRIDE)
#define QUINDLE_KERNEL_OVERRIDE(R, name, params, ...) R name params override;

// The parentheses of a column taken off.
#define QUINDLE_KERNEL_UNPAREN(...) __VA_ARGS__

namespace kernel_ops {

// Each row has the type of its member in kernel.h.
#define QUINDLE_KERNEL_ROW_CHECK(R, name, params, ...)                                                                 \
    static_assert(std::is_same<decltype(&KernelServices::name), R(KernelServices::*) params>::value,                   \
                  "the row of " #name " in kernel_ops.h differs from kernel.h");
QUINDLE_KERNEL_OPS(QUINDLE_KERNEL_ROW_CHECK)
#undef QUINDLE_KERNEL_ROW_CHECK

// Each operation of kernel.h has a row: an operation without one leaves this
// class abstract, and the compiler names the operation.
class EveryOperationHasARow : public KernelServices {
    QUINDLE_KERNEL_OPS(QUINDLE_KERNEL_OVERRIDE)
};
static_assert(sizeof(EveryOperationHasARow{}) > 0, "every operation of kernel.h has a row in kernel_ops.h");

} // namespace kernel_ops

#endif
