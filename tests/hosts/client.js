// The control from Node by its virtual table, each slot called through koffi. Writes what it met to the file that is named
// first: in Wine nothing comes through Node's standard output.
'use strict';
const fs = require('fs');
const koffi = require(process.argv[3]);

const told = [];
const tell = (line) => told.push(line);

const library = (name) => koffi.load(name);
const ole32 = library('ole32.dll');
const oleaut32 = library('oleaut32.dll');
const kernel32 = library('kernel32.dll');
const OutPointer = koffi.out(koffi.pointer('void', 2));
const CoInitialize = ole32.func('__stdcall', 'CoInitialize', 'int32', ['void *']);
const CoUninitialize = ole32.func('__stdcall', 'CoUninitialize', 'void', []);
const CoCreateInstance = ole32.func('__stdcall', 'CoCreateInstance', 'int32',
  ['void *', 'void *', 'uint32', 'void *', OutPointer]);
const CoFreeUnusedLibrariesEx = ole32.func('__stdcall', 'CoFreeUnusedLibrariesEx', 'void', ['uint32', 'uint32']);
const SysAllocString = oleaut32.func('__stdcall', 'SysAllocString', 'void *', ['str16']);
const SysFreeString = oleaut32.func('__stdcall', 'SysFreeString', 'void', ['void *']);
const GetModuleHandle = kernel32.func('__stdcall', 'GetModuleHandleW', 'void *', ['str16']);
const GetProcAddress = kernel32.func('__stdcall', 'GetProcAddress', 'void *', ['void *', 'str']);

const method = (name, ...types) => koffi.proto('__stdcall', name, 'int32', ['void *', ...types]);
const Release = method('Release');
const GetText = method('GetText', OutPointer);
const PutText = method('PutText', 'void *');
const PutInteger = method('PutInteger', 'int16');
const GetInteger = method('GetInteger', koffi.out(koffi.pointer('int16')));
const GetLong = method('GetLong', koffi.out(koffi.pointer('int32')));

// The slots behind the seven of IDispatch.
const slots = {release: 2, getServerAddress: 7, putServerAddress: 8, getServerPort: 9, putServerPort: 10, getCrc: 21};

function call(object, slot, type, ...values) {
  const table = koffi.decode(object, 'void *');
  const address = koffi.decode(table, slot * koffi.sizeof('void *'), 'void *');
  const result = koffi.call(address, type, object, ...values);
  if (result < 0) throw new Error(`slot ${slot}: 0x${(result >>> 0).toString(16)}`);
  return result;
}

// {80A6F5ED-2A74-4AA0-BD7A-211CF85AECE2} as it lies in memory.
function guid(text) {
  const parts = text.split('-');
  const swapped = parts.slice(0, 3).map((part) => part.match(/../g).reverse().join(''));
  return Buffer.from(swapped.concat(parts.slice(3)).join(''), 'hex');
}

function useControl() {
  const out = [null];
  const inProcess = 1;
  const result = CoCreateInstance(guid('D87A57E7-81C3-11D5-97D8-0050BA8CAAD8'), null, inProcess,
    guid('80A6F5ED-2A74-4AA0-BD7A-211CF85AECE2'), out);
  if (result < 0) throw new Error(`CoCreateInstance: 0x${(result >>> 0).toString(16)}`);
  const control = out[0];
  const address = SysAllocString('node.example.com');
  call(control, slots.putServerAddress, PutText, address);
  SysFreeString(address);
  const text = [null];
  call(control, slots.getServerAddress, GetText, text);
  tell(`ServerAddress=${koffi.decode(text[0], 'char16', -1)}`);
  SysFreeString(text[0]);
  call(control, slots.putServerPort, PutInteger, 8080);
  const port = [0];
  call(control, slots.getServerPort, GetInteger, port);
  tell(`ServerPort=${port[0]}`);
  const crc = [0];
  call(control, slots.getCrc, GetLong, crc);
  tell(`GetCRCValue=${crc[0]}`);
  tell(`references left: ${call(control, slots.release, Release)}`);
}

function tellWhetherModuleGoes() {
  const canUnload = GetProcAddress(GetModuleHandle('QuorvaneSecurity.ocx'), 'DllCanUnloadNow');
  const Plain = koffi.proto('__stdcall', 'Plain', 'int32', []);
  tell(canUnload && koffi.call(canUnload, Plain) === 0 ? 'unused' : 'STILL IN USE');
  CoFreeUnusedLibrariesEx(0, 0);
  tell(GetModuleHandle('QuorvaneSecurity.ocx') ? 'STILL LOADED' : 'unloaded');
}

try {
  CoInitialize(null);
  useControl();
  tellWhetherModuleGoes();
  CoUninitialize();
} catch (error) {
  tell(String(error.stack));
}
fs.writeFileSync(process.argv[2], told.map((line) => `${line}\n`).join(''));
