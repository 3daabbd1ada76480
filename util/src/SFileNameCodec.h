#ifndef SFILENAMECODEC_H
#define SFILENAMECODEC_H

// File names are bytes, not text: a name that isn't valid UTF-8 must still open. Installed
// as the local codec, this reads UTF-8 and keeps each byte that isn't part of valid UTF-8
// as a lone surrogate U+DC80..U+DCFF, which it writes back as that byte, so that
// QFile::decodeName and QFile::encodeName give back the bytes they were given.
void SInstallFileNameCodec();

#endif
