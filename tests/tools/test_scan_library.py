"""The scanner on tagged copies of one tone in every format."""

import base64
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

import mutagen
import mutagen.flac
from mutagen import asf, id3, mp4

TOP = pathlib.Path(__file__).resolve().parents[2]
TONES = TOP / "tests" / "data" / "tones"
JPEG = b"\xff\xd8\xff\xe0" + b"picture" * 20 + b"\xff\xd9"
PNG = b"\x89PNG\r\n\x1a\n" + b"picture" * 20
TEXTS = {"Artist": "Björk & the Ünits", "Album": "Größe", "Name": "Señor 東京", "Genre": "Rock", "Year": "1998",
         "Track": "7", "Comment": "first\nsecond\tcolumn \\ end", "Lyrics": "la la"}


def vorbis_picture(kind, data):
    picture = mutagen.flac.Picture()
    picture.type, picture.mime, picture.data = kind, "image/jpeg", data
    return picture


def tag_id3(path, texts, picture):
    audio = mutagen.File(path)
    if audio.tags is None:
        audio.add_tags()
    for column, frame in (("Artist", id3.TPE1), ("Album", id3.TALB), ("Name", id3.TIT2), ("Genre", id3.TCON)):
        audio.tags.add(frame(encoding=1, text=texts[column]))
    audio.tags.add(id3.TDRC(encoding=1, text=texts["Year"] + "-05-01"))
    audio.tags.add(id3.TRCK(encoding=1, text=texts["Track"] + "/12"))
    audio.tags.add(id3.COMM(encoding=1, lang="eng", desc="iTunNORM", text="0000 0000"))
    audio.tags.add(id3.COMM(encoding=1, lang="eng", desc="", text=texts["Comment"]))
    audio.tags.add(id3.USLT(encoding=1, lang="eng", desc="", text=texts["Lyrics"]))
    audio.tags.add(id3.APIC(encoding=0, mime="image/png", type=4, desc="back", data=PNG))
    audio.tags.add(id3.APIC(encoding=0, mime="image/jpeg", type=3, desc="", data=picture))
    audio.save()


def tag_vorbis(path, texts, picture):
    audio = mutagen.File(path)
    for column, key in (("Artist", "artist"), ("Album", "album"), ("Name", "title"), ("Genre", "genre"),
                        ("Year", "date"), ("Comment", "comment"), ("Lyrics", "lyrics")):
        audio[key] = texts[column]
    audio["tracknumber"] = "07"
    if isinstance(audio, mutagen.flac.FLAC):
        audio.add_picture(vorbis_picture(4, PNG))
        audio.add_picture(vorbis_picture(3, picture))
    else:
        audio["metadata_block_picture"] = [
            "not base64!", base64.b64encode(vorbis_picture(3, picture).write()).decode()]
    audio.save()


def tag_mp4(path, texts, picture):
    audio = mp4.MP4(path)
    for column, atom in (("Artist", "\xa9ART"), ("Album", "\xa9alb"), ("Name", "\xa9nam"), ("Genre", "\xa9gen"),
                         ("Year", "\xa9day"), ("Comment", "\xa9cmt"), ("Lyrics", "\xa9lyr")):
        audio[atom] = texts[column]
    audio["trkn"] = [(7, 12)]
    audio["covr"] = [mp4.MP4Cover(picture, mp4.MP4Cover.FORMAT_JPEG)]
    audio.save()


def tag_asf(path, texts, picture):
    audio = asf.ASF(path)
    for column, name in (("Artist", "Author"), ("Album", "WM/AlbumTitle"), ("Name", "Title"),
                         ("Genre", "WM/Genre"), ("Year", "WM/Year"), ("Track", "WM/TrackNumber"),
                         ("Comment", "Description"), ("Lyrics", "WM/Lyrics")):
        audio[name] = texts[column]
    block = b"\x03" + len(picture).to_bytes(4, "little") + "image/jpeg\0x\0".encode("utf-16-le") + picture
    audio["WM/Picture"] = asf.ASFByteArrayAttribute(data=block)
    audio.save()


FORMATS = {"mp3": (tag_id3, "MP3"), "flac": (tag_vorbis, "FLAC"), "ogg": (tag_vorbis, "OGG"),
           "opus": (tag_vorbis, "OPUS"), "m4a": (tag_mp4, "M4A"), "wma": (tag_asf, "WMA"), "wav": (tag_id3, "WAV")}


def unescape(text):
    plain, letters = [], iter(text)
    for letter in letters:
        plain.append({"t": "\t", "n": "\n", "r": "\r", "\\": "\\"}[next(letters)] if letter == "\\" else letter)
    return "".join(plain)


class ScanLibraryTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.music = self.folder / "music"
        self.music.mkdir()
        self.out = self.folder / "library.tsv"

    def scan(self):
        run = subprocess.run([sys.executable, TOP / "tools" / "scan-library", self.music, self.out], text=True,
                             stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False, timeout=60)
        self.assertEqual(run.returncode, 0, run.stderr)
        data = self.out.read_bytes()
        self.assertNotIn(b"\r", data)
        header, *lines = data.decode("utf-8").split("\n")[:-1]
        rows = [dict(zip(header.split("\t"), map(unescape, line.split("\t")), strict=True)) for line in lines]
        return {row["Filename"].rsplit("\\", 1)[1]: row for row in rows}, run.stderr

    def copy(self, tone, name=None):
        path = self.music / (name or tone)
        path.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(TONES / tone, path)
        return path

    def test_every_format_gives_its_tags_and_picture(self):
        for suffix, (tag, _) in FORMATS.items():
            tag(self.copy(f"tone.{suffix}"), TEXTS, JPEG + suffix.encode())
        rows, complaints = self.scan()
        self.assertEqual(complaints, "")
        self.assertEqual(len(rows), len(FORMATS))
        for suffix, (_, kind) in FORMATS.items():
            with self.subTest(suffix):
                row = rows[f"tone.{suffix}"]
                self.assertEqual({column: row[column] for column in TEXTS}, TEXTS)
                self.assertEqual(row["Type"], kind)
                self.assertEqual(row["Filename"], "Z:" + str(self.music / f"tone.{suffix}").replace("/", "\\"))
                self.assertIn(int(row["Duration"]), (0, 1))
                self.assertGreater(int(row["Bitrate"]), 8)
                picture = pathlib.Path(row["EmbeddedImage"].removeprefix("Z:").replace("\\", "/"))
                self.assertEqual(picture.read_bytes(), JPEG + suffix.encode())

    def test_untagged_files_are_named_after_themselves(self):
        for suffix in FORMATS:
            self.copy(f"tone.{suffix}", f"plain {suffix}.{suffix.upper()}")
        rows, _ = self.scan()
        for suffix in FORMATS:
            row = rows[f"plain {suffix}.{suffix.upper()}"]
            self.assertEqual([row["Name"], row["Artist"], row["Album"], row["Track"], row["EmbeddedImage"]],
                             [f"plain {suffix}", "", "", "", ""])

    def test_the_old_tag_of_128_bytes_is_read(self):
        path = self.copy("tone.mp3")
        field = lambda text, length: text.encode("latin-1").ljust(length, b"\0")
        with open(path, "ab") as file:
            file.write(b"TAG" + field("Title", 30) + field("Somebody é", 30) + field("Record", 30) +
                       b"1987" + field("Note", 28) + b"\0\x05" + bytes([17]))
        row = self.scan()[0]["tone.mp3"]
        self.assertEqual([row[c] for c in ("Artist", "Album", "Name", "Year", "Track", "Genre", "Comment")],
                         ["Somebody é", "Record", "Title", "1987", "5", "Rock", "Note"])

    def test_folder_pictures_belong_to_the_tracks_beside_them(self):
        self.copy("tone.ogg", "a/1.ogg")
        self.copy("tone.ogg", "b/2.ogg")
        (self.music / "a" / "Folder.JPG").write_bytes(JPEG)
        (self.music / "a" / "cover.jpg").write_bytes(JPEG)
        rows, _ = self.scan()
        self.assertTrue(rows["1.ogg"]["ImageFile"].endswith("\\music\\a\\Folder.JPG"), rows["1.ogg"]["ImageFile"])
        self.assertEqual(rows["2.ogg"]["ImageFile"], "")

    def test_broken_files_are_named_and_left_out(self):
        good = self.copy("tone.flac", "good.flac")
        for suffix in FORMATS:
            (self.music / f"empty.{suffix}").write_bytes(b"")
            (self.music / f"noise.{suffix}").write_bytes(os.urandom(64) * 100)
            whole = (TONES / f"tone.{suffix}").read_bytes()
            (self.music / f"cut.{suffix}").write_bytes(whole[:40])
        (self.music / "gone.mp3").symlink_to(self.music / "nowhere.mp3")
        os.mkfifo(self.music / "pipe.mp3")
        os.mkfifo(self.music / "folder.jpg")
        (self.music / "notes.txt").write_text("no music")
        rows, complaints = self.scan()
        self.assertEqual(rows[good.name]["ImageFile"], "")
        for name in ("empty.flac", "cut.m4a", "noise.wma", "gone.mp3", "pipe.mp3"):
            self.assertNotIn(name, rows)
            self.assertIn(name, complaints)
        self.assertNotIn("notes.txt", complaints)

    def test_names_that_a_library_file_cannot_hold(self):
        os.rename(self.copy("tone.ogg"), os.fsencode(self.music) + b"/bad\xff.ogg")
        self.copy("tone.ogg", "back\\slash.ogg")
        self.copy("tone.ogg", "tab\tand é.ogg")
        rows, complaints = self.scan()
        self.assertEqual(list(rows), ["tab\tand é.ogg"])
        self.assertEqual(complaints.count("left out"), 2)

    def test_a_second_scan_sees_changes(self):
        path = self.copy("tone.flac")
        self.copy("tone.ogg")
        self.scan()
        tag_vorbis(path, TEXTS, JPEG)
        (self.music / "tone.ogg").unlink()
        rows, _ = self.scan()
        self.assertEqual([(name, row["Album"]) for name, row in rows.items()], [("tone.flac", TEXTS["Album"])])
        shutil.rmtree(f"{self.out}.images")
        picture = self.scan()[0]["tone.flac"]["EmbeddedImage"]
        self.assertTrue(os.path.exists(picture.removeprefix("Z:").replace("\\", "/")))

    def test_a_link_that_leads_back_ends(self):
        self.copy("tone.ogg", "album/1.ogg")
        (self.music / "album" / "again").symlink_to(self.music)
        self.assertEqual(len(self.scan()[0]), 1)


if __name__ == "__main__":
    unittest.main()
