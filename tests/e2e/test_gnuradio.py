"""GNU Radio sees in SigMF outputs what it sees in WAV outputs of the same entries, and what it writes as SigMF is read."""
import json
import sys
import unittest

import numpy as np

from program import EndToEndTest, local, run_ok

try:
    from gnuradio import analog, blocks, fft, gr
except ImportError:
    gr = None
    print("GNU Radio is not installed (Debian's package gnuradio): its view of SigMF is NOT TESTED", file=sys.stderr)

RATE = 192_000
CENTRE = 7_100_000
CUT = 24_000
AT = 7_130_000  # centre of the cuts
SIZE = 4096  # of a transform
# Hz from the centre of the cut, on no bin of the transform; dBFS.
TONES = ((-7_001, -20), (1_234, -35), (6_503, -55))


def read_sigmf(flow, meta):
    """As its block for SigMF tells to: the type of the samples by hand from core:datatype."""
    datatype = json.loads(meta.read_text())["global"]["core:datatype"]
    data = str(meta.with_suffix(".sigmf-data"))
    if datatype == "cf32_le":
        return blocks.file_source(gr.sizeof_gr_complex, data, False)
    assert datatype == "ci16_le", datatype
    source = blocks.file_source(gr.sizeof_short, data, False)
    convert = blocks.interleaved_short_to_complex(False, False, 32768.0)
    flow.connect(source, convert)
    return convert


def read_wav(flow, path, full_scale):
    source = blocks.wavfile_source(str(path), False)
    scale = blocks.multiply_const_cc(1 / full_scale)
    join = blocks.float_to_complex()
    flow.connect((source, 0), (join, 0))
    flow.connect((source, 1), (join, 1))
    flow.connect(join, scale)
    return scale


def spectrum(read, *arguments):
    """Mean level of every bin in dBFS of a carrier, by GNU Radio's transform; from the lowest frequency up."""
    flow = gr.top_block()
    window = fft.window.flattop(SIZE)
    source = read(flow, *arguments)
    sink = blocks.vector_sink_f(SIZE)
    flow.connect(source, blocks.stream_to_vector(gr.sizeof_gr_complex, SIZE), fft.fft_vcc(SIZE, True, window, True),
                 blocks.complex_to_mag_squared(SIZE), sink)
    flow.run()
    power = np.array(sink.data()).reshape(-1, SIZE)[1:-1].mean(axis=0)
    return 10 * np.log10(power / np.sum(window) ** 2 + 1e-30)


def samples(read, *arguments):
    flow = gr.top_block()
    sink = blocks.vector_sink_c()
    flow.connect(read(flow, *arguments), sink)
    flow.run()
    return np.array(sink.data())


def frequency(data, near):
    """Of the strongest line within 50 Hz, to parts of a bin."""
    window = np.hanning(len(data))
    level = np.log(np.abs(np.fft.fft(data * window)) + 1e-30)
    bins = np.fft.fftfreq(len(data), 1 / CUT)
    middle = max(np.flatnonzero(np.abs(bins - near) < 50), key=lambda each: level[each])
    a, b, c = level[middle - 1], level[middle], level[middle + 1]
    return bins[middle] + (a - c) / (a - 2 * b + c) / 2 * CUT / len(data)


@unittest.skipIf(gr is None, "GNU Radio is not installed: its view of SigMF is NOT TESTED")
class TestGnuRadio(EndToEndTest):
    def test_spectrum_of_sigmf_is_that_of_wav(self):
        source = self.folder / "in.wav"
        stations = [part for offset, level in TONES for part in ("--station", f"{AT + offset}:{level}")]
        run_ok("synth", source, "--rate", RATE, "--centre", CENTRE, "--seconds", 10, "--bits", "24", "--noise", "-60",
               *stations)
        for bits, full_scale in ((16, 1.0), (32, 32768.0)):
            with self.subTest(bits=bits):
                entry = f"f={AT},bw={CUT},bits={bits}"
                wav = self.cut_one(source, entry)
                sigmf, = self.cut(source, "--entry", entry, "--format", "sigmf")
                meta = local(sigmf["files"][1])
                self.assertEqual(json.loads(meta.read_text())["global"]["core:sample_rate"], CUT)
                of_sigmf = spectrum(read_sigmf, meta)
                of_wav = spectrum(read_wav, wav, full_scale)
                # libsndfile and GNU Radio scale in floats.
                apart = np.abs(of_sigmf - of_wav).max()
                self.assertLess(apart, 0.001)
                data = samples(read_sigmf, meta)
                self.assertEqual(len(data), sigmf["frames"])
                self.assertLess(np.abs(data - samples(read_wav, wav, full_scale)).max(), 1e-7)
                bins = (np.arange(SIZE) - SIZE // 2) * CUT / SIZE
                for offset, level in TONES:
                    found = of_sigmf[np.abs(bins - offset) < 50].max()
                    place = frequency(data, offset)
                    print(f"{bits} bits: {offset} Hz at {level} dBFS is seen at {place:.3f} Hz with {found:.3f} dBFS; "
                          f"WAV and SigMF differ by {apart:.1e} dB")
                    self.assertAlmostEqual(found, level, delta=0.1)
                    self.assertAlmostEqual(place, offset, delta=0.05)
                wav.unlink()
                for path in sigmf["files"]:
                    local(path).unlink()

    def test_what_its_sink_writes_is_read(self):
        for kind, size, wanted in ((gr.sizeof_gr_complex, 8, "cf32_le"), (gr.sizeof_short, 2, "ci16_le")):
            with self.subTest(kind=wanted):
                path = self.folder / wanted
                flow = gr.top_block()
                signal = analog.sig_source_c(RATE, analog.GR_COS_WAVE, 12_345, 0.25 if size == 8 else 0.25 * 32768)
                head = blocks.head(gr.sizeof_gr_complex, 2 * RATE)
                sink = blocks.sigmf_sink_minimal(item_size=kind, filename=str(path), sample_rate=RATE, center_freq=CENTRE,
                                                 author="somebody", description="a test", hw_info="none", is_complex=True)
                flow.connect(signal, head)
                if size == 2:
                    convert = blocks.complex_to_interleaved_short(False)
                    flow.connect(head, convert, sink)
                else:
                    flow.connect(head, sink)
                flow.run()
                given = ("--start-time", "2024-03-30T12:00:01Z")  # it tells none
                meta = self.folder / f"{wanted}.sigmf-meta"
                info = run_ok("info", meta, "--json", *given).json()
                self.assertEqual((info["sampleRate"], info["centreFrequency"], info["sampleType"]), (RATE, CENTRE, wanted))
                self.assertEqual(info["seconds"], 2)
                found = run_ok("scan", meta, "--json", "--above", "40", *given).json()["signals"]
                loudest = max(found, key=lambda each: each["level"])
                self.assertAlmostEqual(loudest["frequency"], CENTRE + 12_345, delta=60)
                self.assertAlmostEqual(loudest["level"], 20 * np.log10(0.25), delta=0.1)


if __name__ == "__main__":
    unittest.main()
