// zyn/streams/unit.h
//
// The unit Zyn_streams: functions on streams and the tag scanner.
// Its start and stop routines, run by the package frame.

#ifndef ZYN_STREAMS_UNIT_H_
#define ZYN_STREAMS_UNIT_H_

namespace Zyn_streams {

void initialization();
void Finalization();

}  // namespace Zyn_streams

#endif  // ZYN_STREAMS_UNIT_H_
