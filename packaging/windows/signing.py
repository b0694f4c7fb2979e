"""Signatures by osslsigncode, which knows libraries and installers of Windows."""
import pathlib
import shlex
import subprocess
import sys
import tempfile


def signed_bytes(data, arguments):
    """The same file with a signature; the arguments name certificate and key."""
    with tempfile.TemporaryDirectory() as name:
        source, target = pathlib.Path(name, "unsigned"), pathlib.Path(name, "signed")
        source.write_bytes(data)
        command = ["osslsigncode", "sign", "-h", "sha256", "-n", "Halvane", *shlex.split(arguments)]
        done = subprocess.run([*command, "-in", source, "-out", target], check=False, capture_output=True, text=True)
        if done.returncode != 0 or not target.exists():
            sys.exit(f"pack-windows: osslsigncode did not sign: {(done.stderr + done.stdout).strip()}")
        return target.read_bytes()
