"""The measuring tools themselves, on signals whose answer is known."""
import unittest

import numpy as np

from makers import Pulse, Tone, encode, signal
from wavtools import measure_tone, pulse_middle, wrapped


class TestMeasuringTools(unittest.TestCase):
    def test_tone_is_measured_beside_a_stronger_one(self):
        rate = 10_000
        samples = 300 * np.exp(2j * np.pi * (1234.5678 / rate) * np.arange(5 * rate) + 0.5j)
        samples += signal([Tone(-2000, 9000.0)], rate, 0, 5 * rate)
        tone = measure_tone(samples, rate, 1237)
        self.assertAlmostEqual(tone.frequency, 1234.5678, delta=1e-5)
        self.assertAlmostEqual(tone.amplitude, 300, delta=0.01)
        self.assertAlmostEqual(wrapped(tone.phase - 0.5), 0, delta=1e-3)

    def test_frequency_error_of_a_hundredth_of_a_hertz_is_seen(self):
        samples = np.exp(2j * np.pi * (1000.01 / 8000) * np.arange(80_000))
        self.assertAlmostEqual(measure_tone(samples, 8000, 1000).frequency - 1000, 0.01, delta=1e-6)

    def test_middle_of_a_pulse_between_two_samples_is_found(self):
        samples = signal([Pulse(500, 1000, 512.37, 4)], 10_000, 0, 1024)
        self.assertAlmostEqual(pulse_middle(samples, 510, 40), 512.37, delta=1e-6)

    def test_signal_continues_from_one_call_to_the_next(self):
        sources = [Tone(777, 100.0, 1.0), Pulse(-50, 10, 1000.5, 30)]
        whole = signal(sources, 8000, 0, 2000)
        parts = np.concatenate([signal(sources, 8000, 0, 990), signal(sources, 8000, 990, 1010)])
        self.assertTrue(np.array_equal(whole, parts))

    def test_samples_of_every_width_are_laid_out_low_byte_first(self):
        samples = np.array([258 - 1j])
        self.assertEqual(encode(samples, "s16"), bytes.fromhex("0201 ffff"))
        self.assertEqual(encode(samples, "s24"), bytes.fromhex("000201 00ffff"))
        self.assertEqual(encode(samples, "s32"), bytes.fromhex("00000201 0000ffff"))
        self.assertEqual(encode(np.array([16384 - 32768j]), "f32"), bytes.fromhex("0000003f 000080bf"))
        self.assertEqual(encode(np.array([100 - 7j]), "s8"), bytes.fromhex("64 f9"))
