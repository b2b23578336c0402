<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>Appcast</name>
    <message>
        <source>It is no list of versions.</source>
        <translation>バージョンの一覧ではありません。</translation>
    </message>
    <message>
        <source>The list of versions cannot be read: line %1: %2</source>
        <translation>バージョンの一覧を読み込めません: %1 行目: %2</translation>
    </message>
    <message>
        <source>The list of versions is too long.</source>
        <translation>バージョンの一覧が長すぎます。</translation>
    </message>
</context>
<context>
    <name>AppletPanels</name>
    <message>
        <source>Version %1</source>
        <translation>バージョン %1</translation>
    </message>
    <message>
        <source>Choose the Kestrel Applet to test</source>
        <translation>テストする Kestrel アプレットを選択</translation>
    </message>
</context>
<context>
    <name>BundleArchive</name>
    <message>
        <source>There is no applet in the archive.</source>
        <translation>アーカイブにアプレットが含まれていません。</translation>
    </message>
    <message>
        <source>The archive cannot be unpacked: %1</source>
        <translation>アーカイブを展開できません: %1</translation>
    </message>
    <message>
        <source>it is damaged</source>
        <translation>壊れています</translation>
    </message>
    <message>
        <source>The archive is not to be trusted: %1</source>
        <translation>アーカイブを信頼できません: %1</translation>
    </message>
    <message>
        <source>There are too many files in the archive.</source>
        <translation>アーカイブ内のファイルが多すぎます。</translation>
    </message>
    <message>
        <source>There is more than one applet in the archive.</source>
        <translation>アーカイブに複数のアプレットが含まれています。</translation>
    </message>
    <message>
        <source>What is in the archive is too large.</source>
        <translation>アーカイブの内容が大きすぎます。</translation>
    </message>
</context>
<context>
    <name>ChooseApplicationPanel</name>
    <message>
        <source>Choose Application</source>
        <translation>アプリケーションを選択</translation>
    </message>
    <message>
        <source>Select an application:</source>
        <translation>アプリケーションを選択してください:</translation>
    </message>
    <message>
        <source>Applications</source>
        <translation>アプリケーション</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>選択</translation>
    </message>
</context>
<context>
    <name>ChooseColor</name>
    <message>
        <source>Choose a Color</source>
        <translation>色を選択</translation>
    </message>
</context>
<context>
    <name>ChooseFromListViewController</name>
    <message>
        <source>Please make a choice:</source>
        <translation>選択してください:</translation>
    </message>
    <message>
        <source>Choices</source>
        <translation>選択肢</translation>
    </message>
</context>
<context>
    <name>ChooseURLPanel</name>
    <message>
        <source>Choose a URL</source>
        <translation>URL を選択</translation>
    </message>
    <message>
        <source>URL:</source>
        <translation>URL:</translation>
    </message>
    <message>
        <source>URL</source>
        <translation>URL</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>DisplayDialogPanel</name>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>DisplayDialogViewController</name>
    <message>
        <source>Answer</source>
        <translation>回答</translation>
    </message>
    <message>
        <source>Hidden answer</source>
        <translation>非表示の回答</translation>
    </message>
</context>
<context>
    <name>Download</name>
    <message>
        <source>The server did not answer in time.</source>
        <translation>サーバーから時間内に応答がありませんでした。</translation>
    </message>
    <message>
        <source>The download took too long.</source>
        <translation>ダウンロードに時間がかかりすぎました。</translation>
    </message>
    <message>
        <source>Nothing is fetched from %1: it is no https address.</source>
        <translation>%1 は https のアドレスではないため、ダウンロードしません。</translation>
    </message>
    <message>
        <source>The server sends more than was announced.</source>
        <translation>サーバーから予告より多いデータが送られています。</translation>
    </message>
    <message>
        <source>The server answered with the status %1.</source>
        <translation>サーバーがステータス %1 を返しました。</translation>
    </message>
</context>
<context>
    <name>FileBrowser</name>
    <message>
        <source>Back</source>
        <translation>戻る</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>進む</translation>
    </message>
    <message>
        <source>Enclosing Folder</source>
        <translation>上のフォルダ</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>場所</translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation>新規フォルダ</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>よく使う場所</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>ファイル</translation>
    </message>
</context>
<context>
    <name>FileFacts</name>
    <message>
        <source>Application</source>
        <translation>アプリケーション</translation>
    </message>
    <message>
        <source>Rich text document with attachments</source>
        <translation>添付ファイル付きリッチテキスト</translation>
    </message>
    <message>
        <source>Package</source>
        <translation>パッケージ</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>フォルダ</translation>
    </message>
    <message>
        <source>Special file</source>
        <translation>特殊ファイル</translation>
    </message>
    <message>
        <source>Document</source>
        <translation>書類</translation>
    </message>
    <message>
        <source>1 byte</source>
        <translation>1 バイト</translation>
    </message>
    <message>
        <source>More than %1 items</source>
        <translation>%1 項目以上</translation>
    </message>
    <message>
        <source>1 item</source>
        <translation>1 項目</translation>
    </message>
    <message>
        <source>Created %1</source>
        <translation>作成日時: %1</translation>
    </message>
    <message>
        <source>Modified %1</source>
        <translation>更新日時: %1</translation>
    </message>
    <message numerus="yes">
        <source>%Ln items</source>
        <translation>
            <numerusform>%Ln 項目</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FilePortal</name>
    <message>
        <source>Files that can be chosen</source>
        <translation>選択できるファイル</translation>
    </message>
</context>
<context>
    <name>NSOpenPanel</name>
    <message>
        <source>Open</source>
        <translation>開く</translation>
    </message>
    <message>
        <source>Choose a Folder</source>
        <translation>フォルダを選択</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>選択</translation>
    </message>
    <message>
        <source>“%1” cannot be found.</source>
        <translation>「%1」が見つかりません。</translation>
    </message>
    <message>
        <source>“%1” is not of a kind that can be chosen here.</source>
        <translation>「%1」はここで選択できる種類ではありません。</translation>
    </message>
</context>
<context>
    <name>NSSavePanel</name>
    <message>
        <source>&amp;Name:</source>
        <translation>名前(&amp;N):</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名前</translation>
    </message>
    <message>
        <source>A file cannot be called “%1”.</source>
        <translation>「%1」はファイル名に使えません。</translation>
    </message>
    <message>
        <source>The name is too long.</source>
        <translation>名前が長すぎます。</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation>名称未設定</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>The folder “%1” cannot be found.</source>
        <translation>フォルダ「%1」が見つかりません。</translation>
    </message>
    <message>
        <source>You are not allowed to save in “%1”.</source>
        <translation>「%1」に保存する権限がありません。</translation>
    </message>
    <message>
        <source>“%1” already exists. Do you want to replace it?</source>
        <translation>「%1」はすでに存在します。置き換えますか?</translation>
    </message>
    <message>
        <source>Replacing it overwrites what it contains.</source>
        <translation>置き換えると、現在の内容は上書きされます。</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>置き換え</translation>
    </message>
</context>
<context>
    <name>PackedApplets</name>
    <message>
        <source>“%1” cannot be read: %2</source>
        <translation>“%1”を読み込めません: %2</translation>
    </message>
    <message>
        <source>its name is not UTF-8; rename it</source>
        <translation>名前がUTF-8ではありません。名前を変更してください</translation>
    </message>
    <message>
        <source>it is too large</source>
        <translation>ファイルが大きすぎます</translation>
    </message>
    <message>
        <source>there is no applet in it</source>
        <translation>アプレットが入っていません</translation>
    </message>
    <message>
        <source>The folder %1 cannot be made.</source>
        <translation>フォルダ%1を作成できません。</translation>
    </message>
</context>
<context>
    <name>Places</name>
    <message>
        <source>Home</source>
        <translation>ホーム</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>デスクトップ</translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>ドキュメント</translation>
    </message>
    <message>
        <source>Downloads</source>
        <translation>ダウンロード</translation>
    </message>
    <message>
        <source>Music</source>
        <translation>ミュージック</translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation>ピクチャ</translation>
    </message>
    <message>
        <source>Videos</source>
        <translation>ビデオ</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>コンピュータ</translation>
    </message>
</context>
<context>
    <name>PreviewContents</name>
    <message>
        <source>The file could not be read.</source>
        <translation>ファイルを読み込めませんでした。</translation>
    </message>
    <message>
        <source>The text has too many formats to be shown.</source>
        <translation>テキストの書式が多すぎるため表示できません。</translation>
    </message>
    <message>
        <source>The file is not there any more.</source>
        <translation>ファイルはもうありません。</translation>
    </message>
</context>
<context>
    <name>ProgressViewController</name>
    <message>
        <source>Progress</source>
        <translation>進行状況</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Mode</source>
        <translation>モード</translation>
    </message>
    <message>
        <source>Drop files</source>
        <translation>ファイルをドロップ</translation>
    </message>
    <message>
        <source>Find files</source>
        <translation>ファイルを検索</translation>
    </message>
</context>
<context>
    <name>ScriptOpening</name>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>実行</translation>
    </message>
    <message>
        <source>Do you want to run the script “%1”?

A script can do whatever you can do, with all of your files. Run it only if you know where it comes from.</source>
        <translation>スクリプト“%1”を実行しますか？

スクリプトは、あなたのすべてのファイルに対して、あなたにできることを何でも行えます。どこから来たものかわかっている場合にだけ実行してください。</translation>
    </message>
    <message>
        <source>Run Script</source>
        <translation>スクリプトを実行</translation>
    </message>
    <message>
        <source>“%1” could not finish.</source>
        <translation>“%1”は最後まで実行できませんでした。</translation>
    </message>
    <message>
        <source>“%1” could not be opened.</source>
        <translation>“%1”を開けませんでした。</translation>
    </message>
    <message>
        <source>Do you want to run the applet “%1”?

You have not opened it before. An applet can do whatever you can do, with all of your files. Run it only if you know where it comes from.</source>
        <translation>アプレット“%1”を実行しますか？

このアプレットを開くのは初めてです。アプレットは、あなたのすべてのファイルに対して、あなたにできることを何でも行えます。どこから来たものかわかっている場合にだけ実行してください。</translation>
    </message>
    <message>
        <source>Run Applet</source>
        <translation>アプレットを実行</translation>
    </message>
</context>
<context>
    <name>SpotlightResultsCell</name>
    <message>
        <source>Name: %@.
Path: %@</source>
        <translation>名前: %@
パス: %@</translation>
    </message>
</context>
<context>
    <name>SpotlightViewController</name>
    <message>
        <source>Picture</source>
        <translation>画像</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>検索</translation>
    </message>
    <message>
        <source>Name of a file</source>
        <translation>ファイルの名前</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>結果</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>検索中</translation>
    </message>
    <message>
        <source>Quick Look</source>
        <translation>クイックルック</translation>
    </message>
    <message>
        <source>Look at the selected files (space in the list)</source>
        <translation>選択したファイルを表示 (一覧でスペースキー)</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>開く</translation>
    </message>
</context>
<context>
    <name>StartupViewController</name>
    <message>
        <source>Description</source>
        <translation>説明</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>実行</translation>
    </message>
</context>
<context>
    <name>UpdateFetcher</name>
    <message>
        <source>The program quoddle-fetch is missing.</source>
        <translation>プログラム quoddle-fetch がありません。</translation>
    </message>
    <message>
        <source>The download was broken off.</source>
        <translation>ダウンロードが中断されました。</translation>
    </message>
</context>
<context>
    <name>UpdateInstallation</name>
    <message>
        <source>There is nothing to download in the list of versions.</source>
        <translation>バージョンの一覧にダウンロードできるものがありません。</translation>
    </message>
    <message>
        <source>The applet has no key to tell by whether a download comes from its maker.</source>
        <translation>ダウンロードの提供元を確認するための鍵がアプレットにありません。</translation>
    </message>
    <message>
        <source>Its maker has not signed it.</source>
        <translation>作者の署名がありません。</translation>
    </message>
    <message>
        <source>The list of versions does not say how large it is.</source>
        <translation>バージョンの一覧にサイズが記載されていません。</translation>
    </message>
    <message>
        <source>The applet belongs to a software package, which is updated with the system.</source>
        <translation>このアプレットはソフトウェアパッケージの一部で、システムと共に更新されます。</translation>
    </message>
    <message>
        <source>You may not change the folder that the applet is in.</source>
        <translation>アプレットのあるフォルダを変更する権限がありません。</translation>
    </message>
    <message>
        <source>What was downloaded is another applet.</source>
        <translation>ダウンロードしたものは別のアプレットです。</translation>
    </message>
    <message>
        <source>What was downloaded is another version.</source>
        <translation>ダウンロードしたものは別のバージョンです。</translation>
    </message>
    <message>
        <source>What was downloaded has no script.</source>
        <translation>ダウンロードしたアプレットにスクリプトがありません。</translation>
    </message>
</context>
<context>
    <name>UpdatePanel</name>
    <message>
        <source>Notes about this version</source>
        <translation>このバージョンについて</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>このバージョンをスキップ</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>後で通知</translation>
    </message>
    <message>
        <source>Open Page</source>
        <translation>ページを開く</translation>
    </message>
    <message>
        <source>Install Update</source>
        <translation>アップデートをインストール</translation>
    </message>
</context>
<context>
    <name>quoddle-fetch</name>
    <message>
        <source>The applet&apos;s own key is damaged.</source>
        <translation>アプレットの鍵が壊れています。</translation>
    </message>
    <message>
        <source>What was downloaded cannot be read.</source>
        <translation>ダウンロードしたファイルを読み込めません。</translation>
    </message>
    <message>
        <source>The signature is wrong: what was downloaded does not come from the applet&apos;s maker.</source>
        <translation>署名が正しくありません。ダウンロードしたものはアプレットの作者が提供したものではありません。</translation>
    </message>
    <message>
        <source>The download is shorter than was announced.</source>
        <translation>ダウンロードしたデータが予告より短くなっています。</translation>
    </message>
    <message>
        <source>There is no folder to unpack the archive in.</source>
        <translation>アーカイブを展開するフォルダがありません。</translation>
    </message>
    <message>
        <source>What was packed cannot be read.</source>
        <translation>パックされたファイルを読み込めません。</translation>
    </message>
    <message>
        <source>The file has changed meanwhile. Try again.</source>
        <translation>その間にファイルが変更されました。もう一度お試しください。</translation>
    </message>
</context>
<context>
    <name>quoddle::CardView</name>
    <message>
        <source>Information on %1</source>
        <translation>%1 の情報</translation>
    </message>
</context>
<context>
    <name>quoddle::ChooseFromListViewController</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
</context>
<context>
    <name>quoddle::ChooseURLPanel</name>
    <message>
        <source>No addresses are known</source>
        <translation>既知のアドレスはありません</translation>
    </message>
</context>
<context>
    <name>quoddle::DescriptionView</name>
    <message>
        <source>The description is not shown: it is larger than %1.</source>
        <translation>説明が %1 より大きいため表示されません。</translation>
    </message>
    <message>
        <source>The description is not shown: it is too long or has too many formats.</source>
        <translation>説明が長すぎるか書式が多すぎるため表示されません。</translation>
    </message>
</context>
<context>
    <name>quoddle::DirectoryModel</name>
    <message>
        <source>1 byte</source>
        <translation>1 バイト</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名前</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>サイズ</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>更新日時</translation>
    </message>
</context>
<context>
    <name>quoddle::DropFilesView</name>
    <message>
        <source>Drop zone</source>
        <translation>ドロップ領域</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>画像</translation>
    </message>
    <message>
        <source>Drop files here</source>
        <translation>ここにファイルをドロップ</translation>
    </message>
</context>
<context>
    <name>quoddle::FileBrowser</name>
    <message>
        <source>New Folder</source>
        <translation>新規フォルダ</translation>
    </message>
    <message>
        <source>Name of the new folder:</source>
        <translation>新規フォルダの名前:</translation>
    </message>
    <message>
        <source>Create</source>
        <translation>作成</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>“%1” is there already.</source>
        <translation>「%1」はすでに存在します。</translation>
    </message>
    <message>
        <source>The folder “%1” could not be created.</source>
        <translation>フォルダ「%1」を作成できませんでした。</translation>
    </message>
    <message>
        <source>Reading…</source>
        <translation>読み込み中…</translation>
    </message>
    <message>
        <source>You are not allowed to see what is in this folder.</source>
        <translation>このフォルダの内容を表示する権限がありません。</translation>
    </message>
    <message>
        <source>This folder cannot be found.</source>
        <translation>このフォルダが見つかりません。</translation>
    </message>
    <message>
        <source>Nothing here can be chosen.</source>
        <translation>ここには選択できる項目がありません。</translation>
    </message>
    <message>
        <source>This folder is empty.</source>
        <translation>このフォルダは空です。</translation>
    </message>
</context>
<context>
    <name>quoddle::HookStopPanel</name>
    <message>
        <source>“%1” is waiting for an answer from its script.</source>
        <translation>「%1」はスクリプトの応答を待っています。</translation>
    </message>
    <message>
        <source>Waiting for the script</source>
        <translation>スクリプトを待機中</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
</context>
<context>
    <name>quoddle::JudgingView</name>
    <message>
        <source>Checking the files</source>
        <translation>ファイルを確認中</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
</context>
<context>
    <name>quoddle::NSToolbar</name>
    <message>
        <source>Toolbar</source>
        <translation>ツールバー</translation>
    </message>
</context>
<context>
    <name>quoddle::PagesView</name>
    <message>
        <source>Pages</source>
        <translation>ページ</translation>
    </message>
    <message>
        <source>Page %1</source>
        <translation>%1 ページ</translation>
    </message>
</context>
<context>
    <name>quoddle::PictureView</name>
    <message>
        <source>Picture</source>
        <translation>画像</translation>
    </message>
</context>
<context>
    <name>quoddle::PreviewView</name>
    <message>
        <source>Text</source>
        <translation>テキスト</translation>
    </message>
</context>
<context>
    <name>quoddle::ProgressViewController</name>
    <message>
        <source>%d%% completed</source>
        <translation>%d%% 完了</translation>
    </message>
    <message>
        <source>%@ of %@</source>
        <translation>%@/%@</translation>
    </message>
</context>
<context>
    <name>quoddle::PromptView</name>
    <message>
        <source>Prompt</source>
        <translation>案内</translation>
    </message>
</context>
<context>
    <name>quoddle::QLPreviewPanel</name>
    <message>
        <source>Preview</source>
        <translation>プレビュー</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>前へ</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>次へ</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>開く</translation>
    </message>
    <message>
        <source>%1 (%2 of %3)</source>
        <translation>%1 (%2/%3)</translation>
    </message>
    <message>
        <source>Open with “%1”</source>
        <translation>「%1」で開く</translation>
    </message>
    <message>
        <source>Nothing is selected.</source>
        <translation>何も選択されていません。</translation>
    </message>
    <message>
        <source>Only the beginning of the text is shown.</source>
        <translation>テキストの先頭部分だけを表示しています。</translation>
    </message>
    <message>
        <source>It is too large to be shown here.</source>
        <translation>大きすぎるため、ここには表示できません。</translation>
    </message>
    <message>
        <source>Its pages cannot be shown.</source>
        <translation>ページを表示できません。</translation>
    </message>
    <message>
        <source>The picture cannot be shown.</source>
        <translation>画像を表示できません。</translation>
    </message>
    <message>
        <source>Only the first pages are shown.</source>
        <translation>最初の数ページだけを表示しています。</translation>
    </message>
</context>
<context>
    <name>quoddle::SUUpdater</name>
    <message>
        <source>Should %1 look for updates by itself?</source>
        <translation>%1 のアップデートを自動的に確認しますか?</translation>
    </message>
    <message>
        <source>You can look for them at any time with “Check for Updates…” in the menu.</source>
        <translation>メニューの「アップデートを確認…」からいつでも確認できます。</translation>
    </message>
    <message>
        <source>Check Automatically</source>
        <translation>自動的に確認</translation>
    </message>
    <message>
        <source>Don’t Check</source>
        <translation>確認しない</translation>
    </message>
    <message>
        <source>Looking for updates…</source>
        <translation>アップデートを確認中…</translation>
    </message>
    <message>
        <source>Preparing version %1…</source>
        <translation>バージョン %1 を準備中…</translation>
    </message>
    <message>
        <source>%1 does not look for updates now.</source>
        <translation>%1 は現在アップデートを確認できません。</translation>
    </message>
    <message>
        <source>Try again later.</source>
        <translation>後でもう一度お試しください。</translation>
    </message>
    <message>
        <source>%1 cannot look for updates.</source>
        <translation>%1 はアップデートを確認できません。</translation>
    </message>
    <message>
        <source>The address in its SUFeedURL is none.</source>
        <translation>SUFeedURL のアドレスが正しくありません。</translation>
    </message>
    <message>
        <source>It does not say which version it is.</source>
        <translation>バージョンが記載されていません。</translation>
    </message>
    <message>
        <source>%1 could not look for updates.</source>
        <translation>%1 のアップデートを確認できませんでした。</translation>
    </message>
    <message>
        <source>%1 is up to date.</source>
        <translation>%1 は最新です。</translation>
    </message>
    <message>
        <source>Version %1 is the newest one.</source>
        <translation>バージョン %1 が最新です。</translation>
    </message>
    <message>
        <source>The notes about this version could not be fetched. %1</source>
        <translation>このバージョンの説明を取得できませんでした。%1</translation>
    </message>
    <message>
        <source>The update of %1 could not be installed.</source>
        <translation>%1 のアップデートをインストールできませんでした。</translation>
    </message>
    <message>
        <source>Downloading version %1…</source>
        <translation>バージョン %1 をダウンロード中…</translation>
    </message>
    <message>
        <source>It is incomplete.</source>
        <translation>不完全です。</translation>
    </message>
    <message>
        <source>The update of %1 is ready.</source>
        <translation>%1 のアップデートの準備ができました。</translation>
    </message>
    <message>
        <source>It is installed as soon as the applet is quit.</source>
        <translation>アプレットの終了時にインストールされます。</translation>
    </message>
    <message>
        <source>The applet stays as it is (error %1).</source>
        <translation>アプレットは元のままです (エラー %1)。</translation>
    </message>
</context>
<context>
    <name>quoddle::SpotlightViewController</name>
    <message>
        <source>The system cannot watch so many folders: new files in some of them appear after half a minute.</source>
        <translation>監視できるフォルダ数を超えています。一部のフォルダでは、新しいファイルの表示に 30 秒ほどかかります。</translation>
    </message>
    <message>
        <source>The search was stopped. Type to search again.</source>
        <translation>検索を停止しました。入力すると再び検索します。</translation>
    </message>
    <message>
        <source>%ld found</source>
        <translation>%ld 件</translation>
    </message>
</context>
<context>
    <name>quoddle::StartupViewController</name>
    <message>
        <source>Version %1</source>
        <translation>バージョン %1</translation>
    </message>
</context>
<context>
    <name>quoddle::UpdatePanel</name>
    <message>
        <source>A new version of %1 is available.</source>
        <translation>%1 の新しいバージョンがあります。</translation>
    </message>
    <message>
        <source>Version %1 has come out; you have version %2.</source>
        <translation>バージョン %1 が公開されています (現在のバージョンは %2)。</translation>
    </message>
    <message>
        <source>Install it now?</source>
        <translation>今すぐインストールしますか?</translation>
    </message>
    <message>
        <source>It cannot be installed from here: %1</source>
        <translation>ここからはインストールできません: %1</translation>
    </message>
    <message>
        <source>There are no notes about this version.</source>
        <translation>このバージョンについての説明はありません。</translation>
    </message>
</context>
<context>
    <name>quoddle::UpdateProgressPanel</name>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1/%2</translation>
    </message>
</context>
</TS>
