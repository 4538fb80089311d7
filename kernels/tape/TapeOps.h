// TapeOps.h - every kernel operation by its place in the interface, with the
// names of the values a tape keeps of its arguments (for reports).
//
// A name written "$name" is a string (its length, then its characters), "*name"
// a list of points (the count, then x and y of each), "#name" a list of ints
// (the count, then the values). "plane...", "item..." and "rect..." stand for
// the values of a record: see TapeKernel.cpp.
#ifndef QUINDLE_TAPE_OPS_H
#define QUINDLE_TAPE_OPS_H

#include <cstdint>
#include <string>
#include <vector>

#define QUINDLE_TAPE_ITEM "plane,item,kind,view,loop,cel,mem,x,y,scaleX,scaleY,maxScale,scaleMode,priority,fixed,z,inset,insetLeft,insetTop,insetRight,insetBottom"
#define QUINDLE_TAPE_PLANE "plane,type,color,left,top,right,bottom,mirror,picture,priority,vanishX,vanishY,pictureChanged"

#define QUINDLE_TAPE_OPS(X)                                                                                     \
    X(GetActiveSampleCount, "")                                                                                 \
    X(IsAudioInstalled, "")                                                                                     \
    X(PreloadSample, "sample")                                                                                  \
    X(PlaySampleAlternate, "sample,qualifier,volume,tag")                                                       \
    X(PlayMessageAudio, "key1,key2,key3,key4,sequence,value1,volume,value2")                                    \
    X(PlaySample, "sample,qualifier,volume,tag,value")                                                          \
    X(StopAllSamples, "")                                                                                       \
    X(StopMessageAudio, "key1,key2,key3,key4,sequence")                                                         \
    X(StopSample, "sample,qualifier")                                                                           \
    X(PauseAllSamples, "")                                                                                      \
    X(PauseSample, "sample,qualifier")                                                                          \
    X(ResumeAllSamples, "")                                                                                     \
    X(ResumeSample, "sample,qualifier")                                                                         \
    X(GetGlobalDuration, "out")                                                                                 \
    X(GetSampleDuration, "sample,out,tag")                                                                      \
    X(SetSampleRate, "rate")                                                                                    \
    X(DefaultSampleRate, "")                                                                                    \
    X(GetSampleRate, "")                                                                                        \
    X(SetSampleBits, "bits")                                                                                    \
    X(GetSampleBits, "")                                                                                        \
    X(SetChannelCount, "channels")                                                                              \
    X(DefaultChannelCount, "")                                                                                  \
    X(GetChannelCount, "")                                                                                      \
    X(GetAutoVolAdjust, "")                                                                                     \
    X(SetAutoVolAdjust, "value")                                                                                \
    X(DistortAllSamples, "value")                                                                               \
    X(DistortSample, "sample,value1,value2")                                                                    \
    X(GetGlobalVolume, "")                                                                                      \
    X(IsMessageAudioPlaying, "key1,key2,key3,key4,sequence")                                                    \
    X(GetSampleVolume, "sample,out,tag")                                                                        \
    X(SetGlobalVolume, "volume")                                                                                \
    X(SetSampleVolume, "sample,volume,value")                                                                   \
    X(FadeSample, "sample,target,value1,value2,value3,tag")                                                     \
    X(CheckNoise, "")                                                                                           \
    X(PanSample, "sample,pan,value")                                                                            \
    X(StopPanSample, "sample,value")                                                                            \
    X(GetDACCritical, "")                                                                                       \
    X(SetDACCritical, "value")                                                                                  \
    X(LoadResource, "type,number,value")                                                                        \
    X(LockResource, "type,number")                                                                              \
    X(UnlockResource, "type,number")                                                                            \
    X(ResourceExists, "type,number")                                                                            \
    X(GetNowSeenRect, "plane,item")                                                                             \
    X(NumLoops, "view")                                                                                         \
    X(NumCels, "view,loop")                                                                                     \
    X(TopPlanePriority, "")                                                                                     \
    X(TopScreenItemPriority, "plane")                                                                           \
    X(ScreenItemOnPoint, "x,y,plane,item,checkSkip")                                                            \
    X(AddScreenItem, QUINDLE_TAPE_ITEM)                                                                         \
    X(DeleteScreenItem, "plane,item")                                                                           \
    X(UpdateScreenItem, QUINDLE_TAPE_ITEM)                                                                      \
    X(AddPolygon, "plane,*points,priority,color,style,pattern,thickness,closed")                                \
    X(DeletePolygon, "plane,polygon")                                                                           \
    X(UpdatePolygon, "plane,polygon,*points,priority,color,style,pattern,thickness,closed")                     \
    X(UpdateScreen, "flag")                                                                                     \
    X(AddPlane, QUINDLE_TAPE_PLANE)                                                                             \
    X(DeletePlane, "plane")                                                                                     \
    X(UpdatePlane, QUINDLE_TAPE_PLANE)                                                                          \
    X(AddPicAt, "plane,picture,x,y,mirror,deleteCopy")                                                          \
    X(SetShowStyle, "plane,style,speed,color,animate,useReferenceFrame,toFrom,#array,arraySize,divisions")      \
    X(ShowStylePercentComplete, "plane")                                                                        \
    X(SetScroll, "plane,stepX,stepY,picture,animate,ticks,mirror")                                              \
    X(MovePlaneItems, "plane,dx,dy,movePictures")                                                               \
    X(InitRobot, "robot,plane,priority,x,y,value")                                                              \
    X(PrepareRobot, "value1,value2,value3,value4")                                                              \
    X(PlayRobot, "")                                                                                            \
    X(PauseRobot, "")                                                                                           \
    X(SetRobotPriority, "priority")                                                                             \
    X(IsRobotDone, "")                                                                                          \
    X(IsRobotPlaying, "")                                                                                       \
    X(TerminateRobot, "")                                                                                       \
    X(GetRobotSignal, "")                                                                                       \
    X(GetMessage, "key1,key2,key3,key4,sequence,size")                                                          \
    X(GetNextMessage, "size")                                                                                   \
    X(GetMessageSize, "key1,key2,key3,key4,sequence")                                                           \
    X(GetNextMessageSize, "")                                                                                   \
    X(GetLastMessageKeys, "")                                                                                   \
    X(GetEvent, "mask")                                                                                         \
    X(PlaneToLocal, "plane,x,y")                                                                                \
    X(PlaneToGlobal, "plane,x,y")                                                                               \
    X(ShowCursor, "")                                                                                           \
    X(HideCursor, "")                                                                                           \
    X(SetCursorPos, "x,y")                                                                                      \
    X(SetCursorView, "view,loop,cel")                                                                           \
    X(Random, "low,high")                                                                                       \
    X(SeedRandom, "seed")                                                                                       \
    X(GetTime, "selector")                                                                                      \
    X(GetTicks, "")                                                                                             \
    X(OpenVmd, "$file,cacheSize,value")                                                                         \
    X(SetVmdPlacement, "x,y,flags,red,green,blue")                                                              \
    X(PlayVmd, "flags,value1,value2")                                                                           \
    X(StopVmd, "")                                                                                              \
    X(ResumeVmd, "")                                                                                            \
    X(CloseVmd, "")                                                                                             \
    X(GetVmdLength, "")                                                                                         \
    X(GetVmdStatus, "")                                                                                         \
    X(GetVmdFramesSkipped, "")                                                                                  \
    X(SetVmdPalette, "")                                                                                        \
    X(RestrictVmdPalette, "value1,value2")                                                                      \
    X(ShowVmdCursor, "show")                                                                                    \
    X(InitVmdBlobs, "")                                                                                         \
    X(StopVmdBlobs, "")                                                                                         \
    X(AddVmdBlob, "value1,value2,value3,value4,value5")                                                         \
    X(DeleteVmdBlob, "blob")                                                                                    \
    X(BlackOutVmd, "value1,value2,value3,value4")                                                               \
    X(GetVmdWidth, "")                                                                                          \
    X(GetVmdHeight, "")                                                                                         \
    X(PointInPolygon, "x,y,*points")                                                                            \
    X(AllocMemory, "size")                                                                                      \
    X(FreeMemory, "")                                                                                           \
    X(NewPlane, "type,color,left,top,right,bottom,window,priority,vanishX,vanishY,picture,mirror")              \
    X(PlaneRectChanged, QUINDLE_TAPE_PLANE)                                                                     \
    X(NewScreenItem, "plane,kind,view,loop,cel,mem,x,y,scaleX,scaleY,maxScale,scaleMode")                       \
    X(DisposeScreenItem, "plane,item")                                                                          \
    X(DLLCheckValid, "mem")                                                                                     \
    X(PlaneCreated, "plane")                                                                                    \
    X(OpenAvi, "movie,$file")                                                                                   \
    X(CloseAvi, "movie")                                                                                        \
    X(SetAviRect, "movie,x,y,width,height")                                                                     \
    X(SetAviPos, "movie,x,y")                                                                                   \
    X(PlayAvi, "movie,value1,value2,playType,value4")                                                           \
    X(StopAvi, "movie")                                                                                         \
    X(PauseAvi, "movie")                                                                                        \
    X(CueAvi, "movie,frame")                                                                                    \
    X(SeekAvi, "movie,frame")                                                                                   \
    X(ResumeAvi, "movie")                                                                                       \
    X(SetAviPalette, "movie")                                                                                   \
    X(GetAviLength, "movie")                                                                                    \
    X(GetAviFrameNum, "movie")                                                                                  \
    X(GetAviStatus, "movie")                                                                                    \
    X(SetAviEvent, "flags")

enum TapeOp : std::uint8_t {
#define QUINDLE_TAPE_ENUM(name, args) kTapeOp##name,
    QUINDLE_TAPE_OPS(QUINDLE_TAPE_ENUM)
#undef QUINDLE_TAPE_ENUM
        kTapeOpCount
};

// "UpdateScreenItem(plane 20000, item 7, ..., x 120, y 300, ...)": a call as a report shows it.
std::string TapeDescribeCall(std::uint8_t op, const std::vector<std::int64_t>& args);

#endif
