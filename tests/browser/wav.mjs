// A tiny WAV writer for the browser tests' fixtures: 16-bit integer or 32-bit float PCM,
// interleaved from one Float64Array per channel.

const FORMAT_PCM = 1;
const FORMAT_FLOAT = 3;

function writeAscii(view, offset, text) {
  for (let i = 0; i < text.length; i++) view.setUint8(offset + i, text.charCodeAt(i));
}

// The RIFF header with a plain 16-byte fmt chunk and the data chunk's header.
function writeHeader(view, { sampleRate, channels, float }, dataBytes) {
  const bytesPerSample = float ? 4 : 2;
  writeAscii(view, 0, 'RIFF');
  view.setUint32(4, 36 + dataBytes, true);
  writeAscii(view, 8, 'WAVE');
  writeAscii(view, 12, 'fmt ');
  view.setUint32(16, 16, true);
  view.setUint16(20, float ? FORMAT_FLOAT : FORMAT_PCM, true);
  view.setUint16(22, channels, true);
  view.setUint32(24, sampleRate, true);
  view.setUint32(28, sampleRate * channels * bytesPerSample, true);
  view.setUint16(32, channels * bytesPerSample, true);
  view.setUint16(34, bytesPerSample * 8, true);
  writeAscii(view, 36, 'data');
  view.setUint32(40, dataBytes, true);
}

// Integer samples are scaled by 32767 and rounded, clamped to the 16-bit range.
function writeSample(view, offset, value, float) {
  if (float) {
    view.setFloat32(offset, value, true);
    return;
  }
  const code = Math.max(-32768, Math.min(32767, Math.round(value * 32767)));
  view.setInt16(offset, code, true);
}

// The bytes of a WAV file holding `channelData` (equally long Float64Arrays) at `sampleRate`.
export function wavBytes(channelData, sampleRate, { float = false } = {}) {
  const channels = channelData.length;
  const frames = channelData[0].length;
  const bytesPerSample = float ? 4 : 2;
  const dataBytes = frames * channels * bytesPerSample;
  const buffer = new ArrayBuffer(44 + dataBytes);
  const view = new DataView(buffer);
  writeHeader(view, { sampleRate, channels, float }, dataBytes);
  let offset = 44;
  for (let frame = 0; frame < frames; frame++) {
    for (let channel = 0; channel < channels; channel++) {
      writeSample(view, offset, channelData[channel][frame], float);
      offset += bytesPerSample;
    }
  }
  return new Uint8Array(buffer);
}
